#include "connectionmanagement/korveguitoservercorbahandler.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "connectionmanagement/recordlisterror.h"
#include "connectionmanagement/remotecall.h"

#include "coresupport/trace.h"
#include "korvebase/corbatoclientconverter.h"
#include "korvebase/korveconfiguration.h"
#include "orbconnection/orbhandler.h"

#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>

using CorbaCommon::OrbHandler;
using KorveCommon::AbstractServerConnectionData;
using KorveCommon::IRecordStateChangedListener;

namespace KorveGUI
{
namespace
{
constexpr char sourceName[] = "connectionmanagement/korveguitoservercorbahandler";
constexpr std::chrono::milliseconds retryPause{100};
constexpr int failuresUntilTrace = 1000;
constexpr std::chrono::milliseconds deadConnectionsLimit{300};

unsigned long numberOfRecordFailure(const RemoteOutcome &outcome)
{
    switch (outcome.kind) {
    case RemoteOutcome::Kind::Done:
        return recordlist::success;
    case RemoteOutcome::Kind::ManagerException:
        return outcome.refusal == TQ_KRV::IF_KRV_c_KRV::Invalid_DeviceId ? recordlist::deviceUnknown
                                                                         : recordlist::refused;
    case RemoteOutcome::Kind::NotExisting:
    case RemoteOutcome::Kind::Transient:
        return recordlist::managerNotReachable;
    case RemoteOutcome::Kind::ConnectionLost: // not repeated: only the caller knows whether that does harm
    case RemoteOutcome::Kind::NotRegistered:
    case RemoteOutcome::Kind::SystemException:
    case RemoteOutcome::Kind::Unknown:
        break;
    }
    return recordlist::failed;
}
} // namespace

KorveGuiToServerCorbaHandler::KorveGuiToServerCorbaHandler(const QString &subsystem, const ConnectionDataPtr &data,
                                                           const QString &workstation)
    : subsystem(subsystem), workstation(workstation), serverConnectionData(data)
{
    using Self = KorveGuiToServerCorbaHandler;
    AbstractServerConnectionData *const source = data.get();
    if (workstation.isEmpty())
        connect(source, &AbstractServerConnectionData::si_allTicsConnected, this, &Self::sl_initializeConnection);
    else
        connect(source, &AbstractServerConnectionData::si_allTicsConnected, this, &Self::sl_initializeDirectConnection);
    connect(source, &AbstractServerConnectionData::si_allTicsDisconnected, this, &Self::sl_disconnect);
}

KorveGuiToServerCorbaHandler::~KorveGuiToServerCorbaHandler() = default;

void KorveGuiToServerCorbaHandler::Shutdown()
{
    DisconnectFromServer();
}

bool KorveGuiToServerCorbaHandler::ReconnectToServer()
{
    return ConnectToServer();
}

QString KorveGuiToServerCorbaHandler::GetCurrentSubsystem() const
{
    return serverConnectionData->GetCurrentSubsystem();
}

bool KorveGuiToServerCorbaHandler::IsConnected() const
{
    return !CORBA::is_nil(korveInterface) && !GetCurrentSubsystem().isEmpty();
}

QString KorveGuiToServerCorbaHandler::GetKorveRootPath() const
{
    return serverConnectionData->GetConfiguration()->GetKorveRootPath();
}

void KorveGuiToServerCorbaHandler::sl_initializeConnection(const QString &newSubsystem)
{
    subsystem = newSubsystem;
    DisconnectFromServer();
    if (!serverConnectionData->IsConnected(newSubsystem) || ConnectToServer())
        return;
    QTimer::singleShot(retryPause, this, [this, newSubsystem] { sl_initializeConnection(newSubsystem); });
}

void KorveGuiToServerCorbaHandler::sl_initializeDirectConnection()
{
    if (!serverConnectionData->IsConnected(GetCurrentSubsystem()) || ConnectToServer())
        return;
    QTimer::singleShot(retryPause, this, [this] { sl_initializeDirectConnection(); });
}

void KorveGuiToServerCorbaHandler::sl_disconnect(const QString &fallen)
{
    if (fallen == GetCurrentSubsystem())
        DisconnectFromServer();
}

bool KorveGuiToServerCorbaHandler::DisconnectFromServer()
{
    korveInterface = TQ_KRV::IF_KRV_c_KRV::_nil();
    replayInterface = TQ_KRV::IF_KORVE_Replay::_nil();
    channelInterface = TQ_KRV::IF_KRV_c_Chan::_nil();
    adminInterface = TQ_KRV::IF_KORVE_Admin::_nil();
    return true;
}

bool KorveGuiToServerCorbaHandler::ConnectToServer()
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (IsConnected())
        return true;
    QString error;
    const bool connected = workstation.isEmpty() ? connectToSubsystem(error) : connectToWorkstation(error);
    TraceConnectionFailure(connected, workstation, error);
    return connected;
}

bool KorveGuiToServerCorbaHandler::connectToSubsystem(QString &error)
{
    const QString path = AbstractServerConnectionData::GetKorveOrbConnectionPath(GetCurrentSubsystem());
    const auto resolve = [](const char *name) {
        // Nil while the service is away; the connection data's watch notices when it is back.
        const CCO::IF_CCO_c_ptr service = OrbHandler::Instance().GetCCO();
        if (CORBA::is_nil(service)) // a call would say so as well, but on standard error, too
            throw CORBA::INV_OBJREF(0, CORBA::COMPLETED_NO);
        return service->Resolve(name, CCO::rtInstallation);
    };
    if (!takeManager(path, resolve, error))
        return false;
    traceAt(TraceLevel::Normal, sourceName, [&] { return QStringLiteral("Connected to Subsystem path %1").arg(path); });
    return true;
}

bool KorveGuiToServerCorbaHandler::connectToWorkstation(QString &error)
{
    const QString path = AbstractServerConnectionData::GetKorveOrbConnectionPath(QString());
    const auto resolve = [this](const char *name) {
        return OrbHandler::Instance().ResolveInterfaceViaCCO(name, workstation);
    };
    if (!takeManager(path, resolve, error))
        return false;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("Connected to Subsystem path %1 at remote workstation %2").arg(path, workstation);
    });
    return true;
}

template <typename Resolve>
bool KorveGuiToServerCorbaHandler::takeManager(const QString &path, const Resolve &resolve, QString &error)
{
    TQ_KRV::IF_KRV_c_KRV_var manager;
    const RemoteOutcome outcome = remoteCall([&] {
        const CORBA::Object_var object = resolve(path.toLatin1().constData());
        manager = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
    });
    if (!outcome.isDone()) {
        const bool isUnregistered = outcome.kind == RemoteOutcome::Kind::NotRegistered;
        error = QStringLiteral("KorveGuiToServerCorbaHandler::ConnectToServer(): "
                               "Error resolving interface with path: %1%2")
                    .arg(path, isUnregistered ? QStringLiteral(": No KorveManager registered!!") : QString());
    }
    if (CORBA::is_nil(manager))
        return false;
    // Commands are not repeated, so the first one must not meet the end of the manager before.
    CorbaCommon::useUpDeadConnections(manager, deadConnectionsLimit);
    korveInterface = manager;
    return true;
}

// contract: these parameters
void KorveGuiToServerCorbaHandler::TraceConnectionFailure(bool connected, QString &ofWorkstation, QString error)
{
    int &count = connectionFailures[ofWorkstation.isEmpty() ? GetCurrentSubsystem() : ofWorkstation];
    // contract: nothing raises the count from 0, so that every failure is traced
    if (connected)
        count = 0;
    else if (count == 0)
        traceAt(TraceLevel::Normal, sourceName, [&] { return error; });
    else
        count = count >= failuresUntilTrace ? 0 : count + 1;
}

TQ_KRV::IF_KRV_c_KRV_ptr KorveGuiToServerCorbaHandler::GetKorveInterface() const
{
    return IsConnected() ? TQ_KRV::IF_KRV_c_KRV::_duplicate(korveInterface) : TQ_KRV::IF_KRV_c_KRV::_nil();
}

TQ_KRV::IF_KORVE_Replay_ptr KorveGuiToServerCorbaHandler::GetReplayInterface(const QString &deviceId)
{
    if (!IsConnected() || deviceId.isEmpty())
        return TQ_KRV::IF_KORVE_Replay::_nil();
    const RemoteOutcome outcome = remoteCall([&] {
        if (CORBA::is_nil(replayInterface)) // contract: whatever device that was fetched for
            replayInterface = korveInterface->getKorveReplayInterface(deviceId.toLatin1().constData());
    });
    if (outcome.isDone())
        return TQ_KRV::IF_KORVE_Replay::_duplicate(replayInterface);
    traceAt(TraceLevel::Normal, sourceName,
            [] { return QStringLiteral("KorveGuiToServerCorbaHandler::GetReplayInterface(): unknown exception."); });
    return TQ_KRV::IF_KORVE_Replay::_nil();
}

TQ_KRV::IF_KRV_c_Chan_ptr KorveGuiToServerCorbaHandler::GetKorveChannelInterface(const QString &channelId)
{
    if (!IsConnected() || channelId.isEmpty())
        return TQ_KRV::IF_KRV_c_Chan::_nil();
    if (CORBA::is_nil(channelInterface)) // contract: whatever channel that was fetched for
        channelInterface = korveInterface->getKorveChannelInterface(channelId.toLatin1().constData());
    return TQ_KRV::IF_KRV_c_Chan::_duplicate(channelInterface);
}

TQ_KRV::IF_KORVE_Admin_ptr KorveGuiToServerCorbaHandler::GetKorveAdminInterface()
{
    const RemoteOutcome outcome = remoteCall([this] {
        if (IsConnected() && CORBA::is_nil(adminInterface))
            adminInterface = korveInterface->getKorveAdminInterface();
    });
    if (outcome.isDone())
        return TQ_KRV::IF_KORVE_Admin::_duplicate(adminInterface);
    traceAt(TraceLevel::Normal, sourceName, [] {
        return QStringLiteral("KorveGuiToServerCorbaHandler::GetKorveAdminInterface(): unknown exception.");
    });
    return TQ_KRV::IF_KORVE_Admin::_nil();
}

unsigned long KorveGuiToServerCorbaHandler::getAllRecords(const QString &deviceId,
                                                          QVector<KORVE_XML::KORVE_RecordData> &records)
{
    if (!IsConnected())
        return recordlist::managerNotReachable;
    const RemoteOutcome outcome = remoteCall([&] {
        TQ_KRV::seqRECORD_DATA_var sequence = korveInterface->getAllRecords(deviceId.toLatin1().constData());
        KorveCommon::CorbaToClientConverter::convertRecords(std::move(sequence.inout()), records);
    });
    if (outcome.kind == RemoteOutcome::Kind::ManagerException)
        traceAt(TraceLevel::Normal, sourceName, [&] { return outcome.text; });
    else if (!outcome.isDone())
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QLatin1String("KorveGuiToServerCorbaHandler::getAllRecords(): exception ") + outcome.text;
        });
    return numberOfRecordFailure(outcome);
}

void KorveGuiToServerCorbaHandler::AddRecordStateChangeListener(IRecordStateChangedListener *listener)
{
    const auto known = std::find(recordStateListeners.begin(), recordStateListeners.end(), listener);
    if (listener && known == recordStateListeners.end())
        recordStateListeners.push_back(listener);
}

void KorveGuiToServerCorbaHandler::RemoveRecordStateChangeListener(IRecordStateChangedListener *listener)
{
    const auto known = std::find(recordStateListeners.begin(), recordStateListeners.end(), listener);
    if (known != recordStateListeners.end())
        recordStateListeners.erase(known);
}

void KorveGuiToServerCorbaHandler::NotifyChannelStateChanged(const QString &deviceId, const QString &recordId,
                                                             const QString &recordName,
                                                             const KorveCommon::ChannelState::State &state)
{
    const auto listeners = recordStateListeners;
    for (IRecordStateChangedListener *listener : listeners)
        if (listener->GetListenedDevice() == deviceId)
            listener->NotifyRecordStateChanged(recordId, recordName, state);
}
} // namespace KorveGUI
