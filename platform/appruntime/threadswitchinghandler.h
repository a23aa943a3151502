#pragma once

#include "appruntime/runinmainthreadevent.h"

#include <memory>

namespace ThreadingHelper
{
/// Takes events to the main thread, on behalf of one source. Made by ThreadSwitchingAdministration.
///
/// Lives until its events have run, also when its maker lets go of it.
/// Thread: any, with or without an event loop.
class APPRUNTIME_EXPORT ThreadSwitchingHandler : public std::enable_shared_from_this<ThreadSwitchingHandler>
{
public:
    /// Runs @p event later, also when called on the main thread; events run in the order of posting. Never blocks.
    /// Errors: without an application the event is dropped and traced.
    void post(RunInMainThreadEvent event);

    /// Runs @p event and returns after it; on the main thread at once. True when it ran.
    ///
    /// Waits for as long as the main thread is busy, so no servant may use it that the main thread may be calling.
    /// Errors: once the application's event loop has ended, gives up: false, traced, the event never runs.
    bool executeAndWait(RunInMainThreadEvent event);

    const QString &sourceName() const { return source; }

private:
    friend class ThreadSwitchingAdministration;
    explicit ThreadSwitchingHandler(const QString &sourceName);

    const QString source;
};
} // namespace ThreadingHelper
