#pragma once

#include "appruntime/threadswitchinghandler.h"

namespace ThreadingHelper
{
/// Makes the handlers by which other threads reach the main thread: the one that constructed the application.
class APPRUNTIME_EXPORT ThreadSwitchingAdministration
{
public:
    /// @p sourceName is the trace source of the caller, "directory/file" without ending. Never null. Thread: any.
    static std::shared_ptr<ThreadSwitchingHandler> CreateThreadSwitchingHandler(const QString &sourceName);
};
} // namespace ThreadingHelper
