#include "installation/recorder/linkerror.h"

#include <cerrno>

namespace installation::recorder
{

LinkError LinkError::ofSystem(int error, const QString &action, LLDCmodule::eLLDCKind otherwise)
{
    const bool gone = error == EPIPE || error == ECONNRESET;
    return {gone ? LLDCmodule::ekDataStreamUnavailable : otherwise,
            QStringLiteral("%1: %2").arg(action, qt_error_string(error))};
}

} // namespace installation::recorder
