#include "appruntime/threadswitchingadministration.h"
#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <cstdlib>
#include <future>

namespace
{
using testing::ElementsAre;
using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::ThreadSwitchingAdministration;

const auto handler = ThreadSwitchingAdministration::CreateThreadSwitchingHandler("tests/shutdown");

/// Destroys the application and reports by the exit code whether a post is then dropped, and traced for debugging alone.
[[noreturn]] void postWithoutApplication()
{
    const CapturedTraces traces(unsigned(TraceLevel::Debug));
    qApp->~QCoreApplication();
    handler->post(RunInMainThreadEvent([] {}));
    const bool dropped =
        traces.texts() == std::vector<std::string>{"No application runs: an event of tests/shutdown was dropped"};
    std::_Exit(dropped ? 0 : 1);
}

TEST(Shutdown, DropsPostsWhenTheApplicationIsGone)
{
    EXPECT_EXIT(postWithoutApplication(), testing::ExitedWithCode(0), "");
}

TEST(Shutdown, LetsNobodyWaitOnceTheEventLoopHasEnded)
{
    const CapturedTraces traces;
    handler->post(RunInMainThreadEvent([] { QCoreApplication::quit(); }));
    QCoreApplication::exec();
    auto ran = std::async(std::launch::async, [] { return handler->executeAndWait(RunInMainThreadEvent([] {})); });
    EXPECT_FALSE(ran.get());
    EXPECT_THAT(traces.texts(), ElementsAre("The application is ending: an event of tests/shutdown was given up"));
}
} // namespace
