#include "tests/commands/outagefixture.h"
#include "tests/support/patience.h"

#include <QDir>
#include <QtTest/QTest>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <malloc.h>

using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace
{

constexpr milliseconds callLimit{3000};
constexpr int kills = 50; // of each command
constexpr int warmUp = 10; // of them: until the ORB has all that it keeps
constexpr int heapOfAKill = 2048; // at most: marks of the round, and what the heap rounds up

int openFiles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

/// What this program has of the heap; 0 under a sanitizer, which has a heap of its own.
std::size_t heapBytes()
{
    return ::mallinfo2().uordblks;
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
        EXPECT_TRUE(managerKnowsTheDevice());
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
        Patience patience(std::chrono::seconds(30), [] {});
        number = GetParam().give(world, round);
        patience.end();
        EXPECT_FALSE(patience.isOver()) << "it hangs";
        killer.join();
        return number;
    }

    /// How long the command takes when nothing happens to the manager.
    static microseconds giveInPeace(World &world)
    {
        GetParam().prepare(world, ++lastRound);
        EXPECT_EQ(GetParam().effects(world, lastRound), 0);
        unsigned long number = 0;
        const microseconds usual = timeOf([&] { number = GetParam().give(world, lastRound); });
        EXPECT_EQ(number, 0u);
        check(GetParam(), world, lastRound, number);
        return usual;
    }
    /// Each time at another moment. How often the command was answered all the same.
    static int killAtMoments(World &world, microseconds usual, int times)
    {
        std::uniform_int_distribution<int> moment(0, static_cast<int>(usual.count() * 3 / 2));
        int answered = 0;
        for (int n = 0; n < times; ++n) {
            GetParam().prepare(world, ++lastRound);
            const unsigned long number = giveUnderFire(world, lastRound, microseconds(moment(random())));
            answered += number == 0 ? 1 : 0;
            check(GetParam(), world, lastRound, number);
            startAgain();
            world.connect();
        }
        return answered;
    }
    static std::mt19937 &random()
    {
        static std::mt19937 generator(20261121);
        return generator;
    }
};

TEST_P(KilledManager, NeitherLiesNorRepeatsNorHangsNorLeaks)
{
    World world(recordIds().value(0));
    const microseconds usual = giveInPeace(world);
    const int first = lastRound + 1;
    const int filesBefore = openFiles();
    int answered = killAtMoments(world, usual, warmUp);
    const std::size_t heapBefore = heapBytes();
    answered += killAtMoments(world, usual, kills - warmUp);
    const auto heapGrowth = static_cast<int>(heapBytes() - heapBefore);
    EXPECT_LE(heapGrowth, heapOfAKill * (kills - warmUp)) << "memory is lost with each kill";
    RecordProperty("heapGrowth", heapGrowth);
    EXPECT_LE(openFiles(), filesBefore + 8); // the ORB keeps some connections
    RecordProperty("answeredBeforeTheEnd", answered);
    for (int round = first; round <= lastRound; ++round)
        EXPECT_LE(GetParam().effects(world, round), 1) << "it was done once more afterwards";
}

INSTANTIATE_TEST_SUITE_P(Commands, KilledManager, testing::ValuesIn(commandsUnderFire()),
                         [](const auto &info) { return "During_" + std::string(info.param.name); });

} // namespace
