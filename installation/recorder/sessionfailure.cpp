#include "installation/recorder/sessionfailure.h"

#include "coresupport/trace.h"

namespace installation::recorder
{

namespace
{
constexpr const char *sourceName = "installation/recorder/sessionfailure";
}

LLDCmodule::exLLDC linkFailure(const char *operation, const LinkError &error)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 failed: %2").arg(QLatin1String(operation), error.text()); });
    return {error.kind(), error.text().toUtf8().constData()};
}

} // namespace installation::recorder
