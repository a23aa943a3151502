#include "installation/recorder/pacer.h"

#include <gtest/gtest.h>

using namespace installation::recorder;
using namespace std::chrono_literals;

namespace
{

/// A thousand samples of four bytes a second: pieces of ten samples, each ten milliseconds.
class Pace : public testing::Test
{
protected:
    const Pacer::Clock::time_point begin = Pacer::Clock::time_point(1000s);
    Pacer pacer{1000, 4, begin};
};

TEST_F(Pace, LetsNothingGoBeforeItsTime)
{
    EXPECT_EQ(pacer.due(begin), 0u);
    EXPECT_EQ(pacer.due(begin + 9ms), 0u);
    EXPECT_GE(pacer.nextPiece(), begin + 10ms);
    EXPECT_EQ(pacer.due(pacer.nextPiece()), 40u);
}

TEST_F(Pace, CountsWhatHasGone)
{
    pacer.due(begin + 10ms + 1us);
    pacer.sent(30);
    EXPECT_EQ(pacer.due(begin + 11ms), 10u);
    pacer.sent(10);
    EXPECT_EQ(pacer.due(begin + 11ms), 0u);
    EXPECT_EQ(pacer.due(begin + 35ms), 80u);
}

TEST_F(Pace, KeepsToTheRateOverHours)
{
    quint64 sent = 0;
    for (auto now = begin; now <= begin + 3h; now += 400ms) {
        const quint64 due = pacer.due(now);
        pacer.sent(due);
        sent += due;
    }
    EXPECT_NEAR(double(sent), 3 * 3600 * 4000.0, 40);
}

TEST_F(Pace, DoesNotCatchUpWithALongHold)
{
    EXPECT_EQ(pacer.due(begin + 1s), 4000u);
    EXPECT_EQ(pacer.due(begin + 60s), 40u);
    pacer.sent(40);
    EXPECT_EQ(pacer.due(begin + 60s), 0u);
    EXPECT_EQ(pacer.due(begin + 60s + 10ms + 1us), 40u);
}

TEST_F(Pace, StartsAgainWithoutArrears)
{
    pacer.due(begin + 500ms);
    pacer.restart(begin + 900ms);
    EXPECT_EQ(pacer.due(begin + 905ms), 0u);
    EXPECT_EQ(pacer.due(begin + 910ms + 1us), 40u);
}

TEST(SlowPace, SendsSampleBySample)
{
    const Pacer::Clock::time_point begin(1000s);
    Pacer pacer(0.5, 4, begin);
    EXPECT_EQ(pacer.due(begin + 1999ms), 0u);
    EXPECT_EQ(pacer.due(begin + 2001ms), 4u);
    pacer.sent(4);
    EXPECT_EQ(pacer.due(begin + 3999ms), 0u);
    EXPECT_EQ(pacer.due(begin + 4001ms), 4u);
}

} // namespace
