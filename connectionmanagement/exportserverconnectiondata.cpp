#include "connectionmanagement/exportserverconnectiondata.h"

#include "connectionmanagement/connectionnames.h"
#include "connectionmanagement/korvemanagerconnectiondata.h"

#include "coresupport/trace.h"
#include "korvebase/korveconfiguration.h"
#include "korvebase/valuetreepaths.h"
#include "orbconnection/vtconnectdata.h"

namespace KorveCommon
{
namespace
{
constexpr char sourceName[] = "connectionmanagement/exportserverconnectiondata";

void traceAttempt(const QString &subsystem, const char *result)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QLatin1String("ExportServerConnectionData - CreateVTConnectTics for subsystem ") + subsystem +
               QLatin1String(result);
    });
}
} // namespace

ExportServerConnectionData::ExportServerConnectionData(const QString &prefix, const QString &subsystem)
    : AbstractServerConnectionData(QString())
{
    configuration->SetValuePathPrefix(prefix.size() > 1 ? korve::name::withoutTrailingSlash(prefix) : prefix);
    if (subsystem.isEmpty()) {
        adoptLocalSubsystem();
        return;
    }
    configuration->SetCurrentSubSystem(subsystem);
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QLatin1String("ExportServerConnectionData:: created for subsystem ") + subsystem; // contract: two colons
    });
}

ExportServerConnectionData::~ExportServerConnectionData() = default;

void ExportServerConnectionData::adoptLocalSubsystem()
{
    const QString local = GetLocalSubsystemName();
    if (local.isEmpty()) {
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral("ExportServerConnectionData::unable to get local subSystem Name. "
                                  "No connection to KorveServer possible.");
        });
        return;
    }
    configuration->SetCurrentSubSystem(local);
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QLatin1String("ExportServerConnectionData: created for local subsystem ") + local; });
}

void ExportServerConnectionData::CreateVTConnectTics(const QString &subsystem)
{
    using Tic = KorveManagerConnectionData;
    if (subsystem != configuration->GetCurrentSubSystem())
        return;
    traceAttempt(subsystem, "");
    VtConnectData address;
    if (!GetIPConnectionInformation(subsystem, address)) {
        traceAttempt(subsystem, " FAILED(2)");
        return;
    }
    if (hasTics(subsystem)) {
        traceAttempt(subsystem, " FAILED(1)");
        return;
    }
    Tic *const tic = addTic(subsystem, ServerConnection, korve::path::exportCommand, getClientBasePath(), address);
    reportLater(tic, &Tic::ConnectionChanged, &AbstractServerConnectionData::sl_onConnected);
}

QString ExportServerConnectionData::getClientBasePath() const
{
    return getClientRootPath() + korve::path::exportCommand;
}

QString ExportServerConnectionData::getClientRootPath() const
{
    return configuration->GetValuePathPrefix();
}

IVtClient *ExportServerConnectionData::getVtClient()
{
    return getVtClient(configuration->GetCurrentSubSystem(), ServerConnection);
}
} // namespace KorveCommon
