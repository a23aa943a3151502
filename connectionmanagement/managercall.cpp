#include "connectionmanagement/managercall.h"

#include "common/errorlogging.h"
#include "common/exceptionfamily.h"
#include "coresupport/trace.h"

#include <algorithm>
#include <array>

using TQ_KRV::IF_KRV_c_KRV;

namespace KorveGUI
{
namespace
{
constexpr std::array refusals{"Invalid Device ID - ", "Invalid Address - ", "Invalid Record ID - ", "Request Failed - "};
static_assert(refusals.size() == IF_KRV_c_KRV::Request_Failed + 1, "the kinds of the wire, in its order");

/// A kind that the wire does not have is a request that failed.
QString wordsOf(const IF_KRV_c_KRV::exKRV &refusal)
{
    const unsigned long kind = std::min<unsigned long>(::numberOf(refusal.kind), IF_KRV_c_KRV::Request_Failed);
    return QLatin1String(refusals[kind]) + QString::fromUtf8(refusal.text.in());
}

const char *nameOf(const RemoteFailure &failure)
{
    if (failure.user)
        return "CORBA User Exception";
    return failure.system ? "CORBA System Exception" : "CORBA Unspecified Exception";
}

template <typename... Record>
unsigned long numberOf(const RemoteFailure &failure, const QString &operation, const QString &deviceId,
                       const Record &...recordId)
{
    const KorveAdmin::ErrorLogging log;
    if (failure.user)
        return log.userException(*failure.user, operation, deviceId, recordId...);
    return failure.system ? log.systemException(*failure.system, operation, deviceId, recordId...)
                          : log.unspecifiedError(operation, deviceId, recordId...);
}
} // namespace

unsigned long numberOfFailure(const RemoteFailure &failure, const TracedCommand &command)
{
    const QString operation = QLatin1String(command.name);
    return command.recordId ? numberOf(failure, operation, command.deviceId, *command.recordId)
                            : numberOf(failure, operation, command.deviceId);
}

void traceFailure(const RemoteFailure &failure, const TracedCommand &command, const char *sourceName)
{
    numberOfFailure(failure, command);
    traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromLatin1(nameOf(failure)); });
}

void traceManagerFailure(const RemoteFailure &failure, const TracedCommand &command, const QString &operation,
                         const char *sourceName)
{
    const auto *refusal = IF_KRV_c_KRV::exKRV::_downcast(failure.user);
    if (!refusal)
        return traceFailure(failure, command, sourceName);
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1: %2").arg(operation, wordsOf(*refusal)); });
}
} // namespace KorveGUI
