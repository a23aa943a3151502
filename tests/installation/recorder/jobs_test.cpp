#include "installation/recorder/jobs.h"
#include "installation/recorder/recordererror.h"
#include "tests/installation/recorder/refusal.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

using namespace installation::recorder;

namespace
{

TQ_KORVE::eKorveKind refusalOf(Jobs &jobs)
{
    return kindOf([&] { jobs.takePlace(); });
}

void waitForStop(const std::stop_token &stop)
{
    std::promise<void> asked;
    const std::stop_callback callback(stop, [&] { asked.set_value(); });
    asked.get_future().wait();
}

TEST(LongWork, HasAFewPlaces)
{
    Jobs jobs("tests", 2);
    auto first = std::make_unique<Jobs::Place>(jobs.takePlace());
    const Jobs::Place second = jobs.takePlace();
    EXPECT_EQ(refusalOf(jobs), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    first.reset();
    jobs.takePlace();
}

TEST(LongWork, KeepsItsPlaceUntilItIsDone)
{
    Jobs jobs("tests", 1);
    std::promise<void> end;
    jobs.start(jobs.takePlace(), [done = end.get_future().share()](std::stop_token) { done.wait(); });
    EXPECT_EQ(refusalOf(jobs), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    end.set_value();
}

TEST(LongWork, IsAskedToEnd)
{
    Jobs jobs("tests", 2);
    for (int i = 0; i < 2; ++i)
        jobs.start(jobs.takePlace(), waitForStop);
    jobs.stop();
    EXPECT_EQ(refusalOf(jobs), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
}

TEST(LongWork, MayFail)
{
    Jobs jobs("tests", 1);
    jobs.start(jobs.takePlace(), [](std::stop_token) { throw RecorderError(TQ_KORVE::ekCOPY_FAULT, "no"); });
    jobs.stop();
}

} // namespace
