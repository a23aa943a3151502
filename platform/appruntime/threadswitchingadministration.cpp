#include "appruntime/threadswitchingadministration.h"

namespace ThreadingHelper
{
std::shared_ptr<ThreadSwitchingHandler>
ThreadSwitchingAdministration::CreateThreadSwitchingHandler(const QString &sourceName)
{
    return std::shared_ptr<ThreadSwitchingHandler>(new ThreadSwitchingHandler(sourceName));
}
} // namespace ThreadingHelper
