#include "tests/commands/outagefixture.h"

using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace
{

constexpr milliseconds callLimit{1000};

/// A client whose manager stands still.
class SuspendedManager : public OutageFixture
{
protected:
    static void SetUpTestSuite() { setUp(callLimit); }
};

TEST_P(SuspendedManager, KeepsNobodyWaitingAndDoesNothingTwice)
{
    World world(recordIds().value(0));
    const int round = ++lastRound;
    GetParam().prepare(world, round);
    process("manager")->suspend();
    unsigned long number = 0;
    const microseconds taken = timeOf([&] { number = GetParam().give(world, round); });
    EXPECT_LT(taken, 2 * callLimit) << "it waits for longer than its limit";
    EXPECT_NE(number, 0u);
    EXPECT_TRUE(GetParam().outcomeIsUnknown(world));
    process("manager")->resume();
    world.connect();
    EXPECT_LE(GetParam().effects(world, round), 1);
    GetParam().prepare(world, ++lastRound);
    check(world, lastRound, GetParam().give(world, lastRound));
    EXPECT_LE(GetParam().effects(world, round), 1) << "it was done once more";
}

INSTANTIATE_TEST_SUITE_P(Commands, SuspendedManager, testing::ValuesIn(commandsUnderFire()),
                         [](const auto &info) { return "During_" + std::string(info.param.name); });

} // namespace
