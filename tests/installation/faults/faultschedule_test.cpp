#include "installation/faults/faultschedule.h"

#include <gmock/gmock.h>

#include <future>

using namespace installation::faults;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Event = FaultSchedule::Event;
using testing::ElementsAre;

TEST(FaultScheduleTest, DoesWhatIsDueAtOnceBeforeItIsThere)
{
    int done = 0;
    const FaultSchedule schedule({{1h, [&] { done += 10; }}, {0s, [&] { ++done; }}}, Clock::now());
    EXPECT_EQ(done, 1);
}

TEST(FaultScheduleTest, DoesTheRestInTheOrderOfTheirTimes)
{
    std::vector<int> done;
    std::promise<void> last;
    const FaultSchedule schedule({{30ms, [&] { last.set_value(); }},
                                  {20ms, [&] { done.push_back(2); }},
                                  {10ms, [&] { done.push_back(1); }},
                                  {20ms, [&] { done.push_back(3); }}},
                                 Clock::now());
    ASSERT_EQ(last.get_future().wait_for(20s), std::future_status::ready);
    EXPECT_THAT(done, ElementsAre(1, 2, 3));
}

TEST(FaultScheduleTest, CatchesUpWithTimesThatHavePassed)
{
    std::promise<void> done;
    const FaultSchedule schedule({{1h, [&] { done.set_value(); }}}, Clock::now() - 2h);
    EXPECT_EQ(done.get_future().wait_for(20s), std::future_status::ready);
}
