#include "appruntime/threadswitchinghandler.h"

#include "appruntime/mainthreaddoor.h"
#include "coresupport/trace.h"

namespace
{
constexpr char sourceName[] = "appruntime/threadswitchinghandler";
}

namespace ThreadingHelper
{
ThreadSwitchingHandler::ThreadSwitchingHandler(const QString &sourceName) : source(sourceName) {}

void ThreadSwitchingHandler::post(RunInMainThreadEvent event)
{
    if (MainThreadDoor::instance().post(std::move(event), shared_from_this()))
        return;
    // At the end of a program others may still have something to say; before, somebody has forgotten the application.
    const TraceLevel level = MainThreadDoor::instance().hasClosed() ? TraceLevel::Debug : TraceLevel::Normal;
    traceAt(level, ::sourceName,
            [&] { return QStringLiteral("No application runs: an event of %1 was dropped").arg(source); });
}

bool ThreadSwitchingHandler::executeAndWait(RunInMainThreadEvent event)
{
    if (MainThreadDoor::instance().executeAndWait(std::move(event), shared_from_this()))
        return true;
    traceAt(TraceLevel::Normal, ::sourceName,
            [&] { return QStringLiteral("The application is ending: an event of %1 was given up").arg(source); });
    return false;
}
} // namespace ThreadingHelper
