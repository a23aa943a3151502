#include "connectionmanagement/lumbaserverconnectiondata.h"

#include "connectionmanagement/connectionnames.h"
#include "connectionmanagement/remotecall.h"

#include "coresupport/trace.h"
#include "korvebase/korveconfiguration.h"
#include "korvebase/valuetreepaths.h"
#include "orbconnection/vtconnectdata.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

namespace KorveCommon
{
namespace
{
constexpr char sourceName[] = "connectionmanagement/lumbaserverconnectiondata";
constexpr QLatin1Char slash('/');
} // namespace

LumbaServerConnectionData::LumbaServerConnectionData(const QString &prefix, const QString &subsystem)
    : AbstractServerConnectionData(QString())
{
    connect(configuration.get(), &KorveConfiguration::signalSubsystemChanged, this,
            &LumbaServerConnectionData::sl_currentSubsystemChanged);
    configuration->SetValuePathPrefix(korve::name::withoutTrailingSlash(prefix));
    configuration->SetToolbar(true);
    Initialize(subsystem);
}

LumbaServerConnectionData::~LumbaServerConnectionData() = default;

bool LumbaServerConnectionData::ConnectToAllSubsystems()
{
    const RemoteOutcome outcome = remoteCall([this] { CreateVTConnectTics(GetCurrentSubsystem()); });
    if (!outcome.isDone())
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral(
                "LumbaServerConnectionData: Error resolving the address and interface of the KorveManagers");
        });
    return outcome.isDone();
}

void LumbaServerConnectionData::CreateVTConnectTics(const QString &subsystem)
{
    const QString name = korve::name::keyOf(subsystem);
    VtConnectData data;
    if (!GetIPConnectionInformation(subsystem, data) || hasTics(name))
        return;
    addDeviceTic(name, configuration->MakeRootPath(name) + korve::path::device, data);
    SetupChannel(data, name);
}

bool LumbaServerConnectionData::SetChannelId_ValuePath(const QString &path)
{
    if (path.isEmpty())
        return false;
    channelIdValuePath = path;
    VtConnectData data;
    return GetIPConnectionInformation(currentSubsystem, data) &&
           SetupChannel(data, korve::name::keyOf(currentSubsystem));
}

QString LumbaServerConnectionData::GetChannelId_ValuePath()
{
    return channelIdValuePath.isEmpty() ? QString() : channelIdValuePath + slash;
}

bool LumbaServerConnectionData::SetupChannel(const VtConnectData &data, const QString &subsystem)
{
    values::ValuePtr<values::Value<QString>> value;
    if (channelIdValuePath.isEmpty() || !value.GetFromTree(channelIdValuePath))
        return false;
    const QString channel = value->GetValue();
    if (channel.isEmpty())
        return false;
    replaceChannelTic(subsystem, channel, value->GetPathName(), data);
    return true;
}
} // namespace KorveCommon
