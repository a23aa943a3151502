#include "tests/commands/outagefixture.h"

#include <QDir>
#include <QtTest/QTest>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace
{

constexpr milliseconds callLimit{3000};
constexpr int kills = 50; // of each command

int openFiles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

/// A client whose manager is killed and started again.
class KilledManager : public OutageFixture, public testing::WithParamInterface<CommandUnderFire>
{
protected:
    static void SetUpTestSuite() { setUp(callLimit, 1); }

    static void startAgain()
    {
        process("manager")->kill(); // returns when it has gone and its port is free
        process("manager") = start("manager");
        ASSERT_TRUE(managerKnowsTheDevice());
    }
    /// The command's number, while the manager is killed some time after its beginning.
    static unsigned long giveUnderFire(World &world, int round, microseconds moment)
    {
        const auto victim = static_cast<pid_t>(process("manager")->processId());
        const auto due = std::chrono::steady_clock::now() + moment;
        unsigned long number = 0;
        std::thread killer([&] {
            while (std::chrono::steady_clock::now() < due)
                continue; // moments lie some microseconds apart
            ::kill(victim, SIGKILL);
        });
        const microseconds taken = timeOf([&] { number = GetParam().give(world, round); });
        killer.join();
        EXPECT_LT(taken, 2 * callLimit) << "it hangs";
        return number;
    }

    static std::mt19937 &random()
    {
        static std::mt19937 generator(20261121);
        return generator;
    }
};

TEST_P(KilledManager, NeitherLiesNorRepeatsNorHangs)
{
    World world(recordIds().value(0));
    GetParam().prepare(world, ++lastRound);
    ASSERT_EQ(GetParam().effects(world, lastRound), 0);
    unsigned long number = 0;
    const microseconds usual = timeOf([&] { number = GetParam().give(world, lastRound); });
    ASSERT_EQ(number, 0u);
    check(GetParam(), world, lastRound, number);
    std::uniform_int_distribution<int> moment(0, static_cast<int>(usual.count() * 3 / 2));
    const int first = lastRound + 1;
    const int filesBefore = openFiles();
    int answered = 0;
    for (int n = 0; n < kills; ++n) {
        GetParam().prepare(world, ++lastRound);
        number = giveUnderFire(world, lastRound, microseconds(moment(random())));
        answered += number == 0 ? 1 : 0;
        check(GetParam(), world, lastRound, number);
        startAgain();
        world.connect();
    }
    RecordProperty("answeredBeforeTheEnd", answered);
    for (int round = first; round <= lastRound; ++round)
        EXPECT_LE(GetParam().effects(world, round), 1) << "it was done once more afterwards";
    EXPECT_LE(openFiles(), filesBefore + 8); // the ORB keeps some connections
}

INSTANTIATE_TEST_SUITE_P(Commands, KilledManager, testing::ValuesIn(commandsUnderFire()),
                         [](const auto &info) { return "During_" + std::string(info.param.name); });

} // namespace
