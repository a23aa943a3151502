#include "connectionmanagement/receivertoserverconnectiondata.h"

#include "connectionmanagement/connectionnames.h"
#include "connectionmanagement/korvemanagerconnectiondata.h"

#include "coresupport/trace.h"
#include "korvebase/korveconfiguration.h"
#include "korvebase/valuetreepaths.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectdata.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

namespace KorveCommon
{
namespace
{
using CorbaCommon::OrbHandler;
using korve::name::keyOf;

constexpr char sourceName[] = "connectionmanagement/receivertoserverconnectiondata";
constexpr QLatin1Char slash('/');

void traceNoService()
{
    traceAt(TraceLevel::Normal, sourceName,
            [] { return QStringLiteral("CCO not available initializing ReceiverToServerConnectionData"); });
}
} // namespace

ReceiverToServerConnectionData::ReceiverToServerConnectionData(const QString &prefix, const QString &serverValuePath,
                                                               bool direct)
    : AbstractServerConnectionData(QString()), mode(direct ? 1 : 0)
{
    values::ValuePtr<values::Value<QString>> server;
    if (server.GetFromTree(serverValuePath))
        connectedServer = server->GetValue();
    configuration->SetValuePathPrefix(korve::name::withoutTrailingSlash(prefix));
    configuration->SetToolbar(direct);
    if (OrbHandler::Instance().CCOIsAvailable())
        ReceiverToServerConnectionData::Initialize();
    else
        traceNoService();
}

ReceiverToServerConnectionData::~ReceiverToServerConnectionData() = default;

void ReceiverToServerConnectionData::Initialize()
{
    OrbHandler &orb = OrbHandler::Instance();
    if (!orb.CCOIsAvailable()) {
        traceNoService();
        return;
    }
    subsystem = orb.GetSubsystemOfWorkstation(connectedServer);
    configuration->SetConnectedKorveServer(connectedServer);
    configuration->SetCurrentSubSystem(subsystem);
    AbstractServerConnectionData::Initialize();
}

bool ReceiverToServerConnectionData::GetServerVtConnectionData(VtConnectData &data) const
{
    data.port = VtConnectData::defaultPort;
    data.hostName = connectedServer;
    const bool found = !connectedServer.isEmpty() || GetIPConnectionInformation(QString(), data);
    if (data.ipAddress.isEmpty())
        data.ipAddress = data.hostName;
    return found;
}

void ReceiverToServerConnectionData::CreateVTConnectTics(const QString &wanted)
{
    const QString name = keyOf(wanted);
    VtConnectData data;
    if (!GetServerVtConnectionData(data))
        return;
    Q_EMIT si_korveOnWorkstation(subsystem, data.hostName);
    if (hasTics(name))
        return;
    if (mode == 1) {
        addDeviceTic(name, configuration->GetValuePathPrefix() + korve::path::device, data);
        return;
    }
    addConnectionTic(name, data);
    SetupChannel(data, name);
}

void ReceiverToServerConnectionData::addConnectionTic(const QString &name, const VtConnectData &data)
{
    using Tic = KorveManagerConnectionData;
    Tic *const tic = addTic(name, ServerConnection, korve::path::connection,
                            configuration->GetValuePathPrefix() + korve::path::connection, data);
    connect(tic, &Tic::ConnectionChanged, this, &ReceiverToServerConnectionData::sl_onConnected);
}

bool ReceiverToServerConnectionData::SetChannelId(const QString &newChannelId)
{
    channelId = newChannelId;
    const QString server = configuration->ConnectedKorveServer();
    const QString name = keyOf(OrbHandler::Instance().GetSubsystemOfWorkstation(server));
    if (newChannelId.isEmpty()) {
        resetConnection(name, ChannelConnection);
        return true;
    }
    VtConnectData data;
    data.hostName = server;
    return GetIPConnectionInformation(QString(), data) && SetupChannel(data, name);
}

bool ReceiverToServerConnectionData::SetupChannel(const VtConnectData &data, const QString &name)
{
    const QString channel = GetChannelId();
    if (channel.isEmpty() || mode == 1)
        return false;
    const QString clientPath = configuration->GetValuePathPrefix() + korve::path::channel + slash + channel;
    replaceChannelTic(name, channel, clientPath, data);
    return true;
}

QString ReceiverToServerConnectionData::GetChannelId()
{
    return channelId;
}

QStringList ReceiverToServerConnectionData::GetSubsystemList()
{
    return {subsystem};
}

QString ReceiverToServerConnectionData::GetDeviceBasePath(const QString &deviceId)
{
    return configuration->GetValuePathPrefix() + korve::path::device + slash + deviceId;
}
} // namespace KorveCommon
