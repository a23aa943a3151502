#include "appruntime/runinmainthreadevent.h"

#include "coresupport/trace.h"

#include <exception>

namespace
{
constexpr char sourceName[] = "appruntime/runinmainthreadevent";

void traceException(const QString &poster, const QString &what)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("Exception in an event of %1: %2").arg(poster, what); });
}
} // namespace

namespace ThreadingHelper
{
void RunInMainThreadEvent::run(const QString &poster) const noexcept
{
    try {
        call();
    } catch (const std::exception &exception) {
        traceException(poster, QString::fromUtf8(exception.what()));
    } catch (...) { // the thread door: nothing may reach the event loop
        traceException(poster, QStringLiteral("unknown"));
    }
}
} // namespace ThreadingHelper
