#include "tests/support/waiting.h"

#include "installation/cco/prober.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <future>

using namespace installation;
using namespace std::chrono_literals;

namespace
{

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}

TEST(AProber, AsksRoundByRound)
{
    std::atomic<int> asked = 0;
    Prober prober(1ms, [&] { return std::vector<Prober::Target>{{"A", [&] { ++asked; }}}; });
    EXPECT_EQ(asked, 0);
    prober.start();
    EXPECT_TRUE(waitUntil([&] { return asked >= 3; }));
}

TEST(AProber, IsNotHeldUpByOneSilentTarget)
{
    std::promise<void> answer;
    const std::shared_future<void> silence(answer.get_future());
    std::atomic<int> silentAsked = 0;
    std::atomic<int> asked = 0;
    Prober prober(1ms, [&] {
        return std::vector<Prober::Target>{{"silent",
                                            [&] {
                                                ++silentAsked;
                                                silence.wait();
                                            }},
                                           {"A", [&] { ++asked; }}};
    });
    prober.start();
    EXPECT_TRUE(waitUntil([&] { return silentAsked >= 1 && asked >= 5; }));
    EXPECT_EQ(silentAsked, 1); // not once more while the first probe is under way
    answer.set_value();
    EXPECT_TRUE(waitUntil([&] { return silentAsked >= 2; }));
}

TEST(AProber, IsNotHeldUpByASourceOfManySilentTargets)
{
    std::promise<void> answer;
    const std::shared_future<void> silence(answer.get_future());
    std::atomic<int> asked = 0;
    Prober prober(1ms, [&] {
        std::vector<Prober::Target> targets;
        for (int i = 0; i < 20; ++i)
            targets.push_back({"silent " + std::to_string(i), [&] { silence.wait(); }, "10.0.0.1"});
        targets.push_back({"A", [&] { ++asked; }, "10.0.0.2"});
        return targets;
    });
    prober.start();
    EXPECT_TRUE(waitUntil([&] { return asked >= 5; }));
    answer.set_value();
}

TEST(AProber, MakesARoundAtOnceWhenHurried)
{
    std::atomic<int> asked = 0;
    Prober prober(1h, [&] { return std::vector<Prober::Target>{{"A", [&] { ++asked; }}}; });
    prober.start();
    ASSERT_TRUE(waitUntil([&] { return asked == 1; }));
    prober.hurry();
    EXPECT_TRUE(waitUntil([&] { return asked == 2; }));
}

TEST(AProber, StopsWithinALongInterval)
{
    Prober prober(1h, [] { return std::vector<Prober::Target>(); });
    prober.start();
    prober.stop();
    prober.stop(); // a second one finds nothing to do
}

} // namespace
