#include "connectionmanagement/abstractserverconnectiondata.h"

#include "connectionmanagement/connectionnames.h"
#include "connectionmanagement/korvemanagerconnectiondata.h"
#include "connectionmanagement/managerlookup.h"
#include "connectionmanagement/remotecall.h"

#include "coresupport/trace.h"
#include "korvebase/korveconfiguration.h"
#include "korvebase/valuetreepaths.h"
#include "orbconnection/centralservicemanager.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectionobserver.h"

#include <QPointer>
#include <QThread>

#include <algorithm>
#include <array>
#include <utility>

namespace KorveCommon
{
namespace
{
using CorbaCommon::CentralServiceManager;
using CorbaCommon::OrbHandler;
using Tic = KorveManagerConnectionData;

constexpr char sourceName[] = "connectionmanagement/abstractserverconnectiondata";
constexpr QLatin1Char slash('/');

constexpr std::array checkWords{"Check for ChannelConnected", "Check for DeviceConnected", "Check for ServerConnected"};
static_assert(checkWords.size() == ServerConnection + 1, "one for each type of connection");

// contract: look-ups of a client report themselves under the same name
constexpr QLatin1String notFoundText("AbstractServerConnectionData::IsConnected subsystem not found %1");
} // namespace

AbstractServerConnectionData::AbstractServerConnectionData(const QString &configurationName)
    : configuration(std::make_shared<KorveConfiguration>())
{
    if (!configurationName.isEmpty())
        configuration->Initialize(configurationName);
    centralServiceManager = std::make_unique<CentralServiceManager>(korve::path::valueTreeConnection, 2, 500);
    connect(centralServiceManager.get(), &CentralServiceManager::si_notifyServerAvailablity, this,
            &AbstractServerConnectionData::sl_notifyServerAvailablity);
}

AbstractServerConnectionData::~AbstractServerConnectionData()
{
    AbstractServerConnectionData::ResetVtClientConnection();
}

QString AbstractServerConnectionData::GetKorveOrbConnectionPath(const QString &subsystem)
{
    using namespace korve;
    const QString segment = subsystem.isEmpty() ? QString(name::LocalSubSystem) : name::subSystems + subsystem;
    return path::localSystem + segment + path::managerInterface;
}

QString AbstractServerConnectionData::GetLocalSubsystemName()
{
    return ManagerLookup::reachesCentralService() ? OrbHandler::Instance().GetSubSystemName() : QString();
}

bool AbstractServerConnectionData::GetIPConnectionInformation(const QString &subsystem, VtConnectData &data)
{
    return ManagerLookup().find(subsystem, data);
}

bool AbstractServerConnectionData::GetFirstIPAddressOfHostName(VtConnectData &data)
{
    return VtConnectionObserver::GetFirstIPAddressOfHostNameStatic(data.hostName, data.ipAddress, true);
}

void AbstractServerConnectionData::Initialize()
{
    Q_ASSERT(QThread::currentThread() == thread());
    QString configured = configuration->GetCurrentSubSystem();
    const QString current = GetCurrentSubsystem();
    // Names come from several sources, which differ in case.
    if (!current.isEmpty() && current.toLower() == configured.toLower())
        return;
    ResetVtClientConnection();
    ConnectToAllSubsystems();
    if (ticMap.isEmpty()) {
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral("AbstractServerConnectionData::ConnectToKorveManagers(): No korve managers found");
        });
        return;
    }
    if (configured.isEmpty() && currentSubsystem.isEmpty())
        configured = ticMap.constBegin().key();
    adoptSubsystem(configured);
}

void AbstractServerConnectionData::adoptSubsystem(const QString &configured)
{
    const QString subsystem = configured.isEmpty() ? currentSubsystem : configured;
    if (currentSubsystem != configured)
        configuration->SetCurrentSubSystem(subsystem);
    currentSubsystem = subsystem;
}

void AbstractServerConnectionData::Initialize(const QString &subsystem)
{
    sl_currentSubsystemChanged(subsystem);
}

void AbstractServerConnectionData::sl_currentSubsystemChanged(const QString &subsystem)
{
    currentSubsystem = subsystem;
    Initialize();
}

void AbstractServerConnectionData::sl_notifyServerAvailablity(bool available, const QString &)
{
    if (available)
        Initialize();
}

void AbstractServerConnectionData::sl_onConnected(const QString &subsystem)
{
    const bool now = IsConnected(subsystem);
    const bool before = std::exchange(allTicsConnected[subsystem], now);
    if (now && !before)
        Q_EMIT si_allTicsConnected(subsystem);
    else if (!now && before)
        Q_EMIT si_allTicsDisconnected(subsystem);
}

bool AbstractServerConnectionData::ConnectToAllSubsystems()
{
    const RemoteOutcome outcome = remoteCall([this] {
        const QStringList subsystems = GetSubsystemList();
        for (const QString &subsystem : subsystems) {
            traceAt(TraceLevel::Normal, sourceName, [&] {
                return QStringLiteral("AbstractServerConnectionData: try to connect to subsystem %1").arg(subsystem);
            });
            allTicsConnected[subsystem] = false;
            CreateVTConnectTics(subsystem);
        }
    });
    if (!outcome.isDone())
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral(
                "AbstractServerConnectionData: Error resolving the address and interface of the KorveManagers");
        });
    return outcome.isDone();
}

QStringList AbstractServerConnectionData::GetSubsystemList()
{
    QStringList subsystems;
    const RemoteOutcome outcome = remoteCall([&] {
        subsystems = OrbHandler::Instance().GetAllSubsystems();
        if (subsystems.isEmpty())
            subsystems.append(korve::name::LocalSubSystem);
    });
    if (!outcome.isDone())
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral("AbstractServerConnectionData::GetSubsystemList(): "
                                  "Error resolving the address and interface of the KorveManagers");
        });
    return subsystems;
}

void AbstractServerConnectionData::ResetVtClientConnection()
{
    // What dies with a tic may ask for others: it finds none.
    allTicsConnected = {};
    const auto gone = std::exchange(ticMap, {});
    for (const Tics &tics : gone)
        qDeleteAll(tics);
}

void AbstractServerConnectionData::resetConnection(const QString &subsystem, ConnectionType type)
{
    const auto found = ticMap.find(subsystem);
    if (found == ticMap.end())
        return;
    allTicsConnected[subsystem] = false;
    Tics &tics = found.value();
    const auto firstGone =
        std::stable_partition(tics.begin(), tics.end(), [=](Tic *tic) { return tic->connectionType() != type; });
    const Tics gone(firstGone, tics.end());
    tics.erase(firstGone, tics.end());
    for (Tic *tic : gone) {
        tic->disconnect(this);
        delete tic;
    }
}

bool AbstractServerConnectionData::containsSubsystemInMap(const QString &subsystem) const
{
    return ticMap.contains(subsystem);
}

bool AbstractServerConnectionData::hasTics(const QString &subsystem) const
{
    return !ticMap.value(subsystem).isEmpty();
}

bool AbstractServerConnectionData::contains(const QString &subsystem, QLatin1String traceText) const
{
    if (containsSubsystemInMap(subsystem))
        return true;
    traceAt(TraceLevel::Normal, sourceName, [&] { return QString(traceText).arg(subsystem); });
    return false;
}

KorveManagerConnectionData *AbstractServerConnectionData::findTic(const QString &subsystem, ConnectionType type) const
{
    const Tics tics = ticMap.value(subsystem);
    const auto found = std::find_if(tics.begin(), tics.end(), [=](Tic *tic) { return tic->connectionType() == type; });
    return found == tics.end() ? nullptr : *found;
}

IVtClient *AbstractServerConnectionData::getVtClient(const QString &subsystem, ConnectionType type)
{
    const Tic *const tic = contains(subsystem, notFoundText) ? findTic(subsystem, type) : nullptr;
    return tic ? tic->getConnection()->vtClient() : nullptr;
}

IVtClient *AbstractServerConnectionData::getVtClient(ConnectionType type)
{
    return getVtClient(ticMap.isEmpty() ? QString() : ticMap.constBegin().key(), type);
}

QString AbstractServerConnectionData::getClientBasePath(const QString &subsystem, ConnectionType type) const
{
    const Tic *const tic = findTic(korve::name::keyOf(subsystem), type);
    return tic ? tic->getConnection()->getBaseClientPath() : QString(slash);
}

VtConnectData AbstractServerConnectionData::getConnData(const QString &subsystem, ConnectionType type) const
{
    const Tic *const tic = findTic(korve::name::keyOf(subsystem), type);
    return tic ? tic->getConnection()->connData() : VtConnectData();
}

bool AbstractServerConnectionData::IsConnected(const QString &subsystem)
{
    if (!contains(subsystem, notFoundText))
        return false;
    const Tics tics = ticMap.value(subsystem);
    return std::all_of(tics.begin(), tics.end(), [](Tic *tic) { return tic->isConnected(); });
}

bool AbstractServerConnectionData::isConnected(ConnectionType type, const QString &subsystem)
{
    const QString wanted = subsystem.isEmpty() ? configuration->GetCurrentSubSystem() : subsystem;
    if (!containsSubsystemInMap(wanted)) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 subsystem not found %2").arg(QLatin1String(checkWords.at(type)), wanted);
        });
        return false;
    }
    const Tics tics = ticMap.value(wanted);
    return std::any_of(tics.begin(), tics.end(),
                       [=](Tic *tic) { return tic->connectionType() == type && tic->isConnected(); });
}

bool AbstractServerConnectionData::IsChannelConnected()
{
    return isConnected(ChannelConnection, QString());
}

bool AbstractServerConnectionData::IsDeviceConnected()
{
    return isConnected(DeviceConnection, QString());
}

bool AbstractServerConnectionData::IsServerConnected()
{
    return isConnected(ServerConnection, QString());
}

KorveManagerConnectionData *AbstractServerConnectionData::addTic(const QString &subsystem, ConnectionType type,
                                                                 const QString &serverPath, const QString &clientPath,
                                                                 const VtConnectData &address)
{
    auto connection = std::make_shared<VtConnectionObserver>(serverPath, clientPath, address,
                                                             QString(korve::name::reregistrationNode));
    auto *const tic = new Tic(std::move(connection), type, subsystem);
    tic->subsystemListEntry().append(subsystem);
    ticMap[subsystem].append(tic);
    return tic;
}

void AbstractServerConnectionData::reportLater(Tic *tic, TicSignal signal, Report report)
{
    // Qt delivers what is on its way also when the sender has been deleted meanwhile.
    const auto unlessGone = [this, report, source = QPointer<Tic>(tic)](const QString &subsystem) {
        if (source)
            (this->*report)(subsystem);
    };
    connect(tic, signal, this, unlessGone, Qt::QueuedConnection);
}

void AbstractServerConnectionData::addDeviceTic(const QString &subsystem, const QString &clientPath,
                                                const VtConnectData &address)
{
    using Self = AbstractServerConnectionData;
    Tic *const tic = addTic(subsystem, DeviceConnection, korve::path::device, clientPath, address);
    reportLater(tic, &Tic::ConnectionChanged, &Self::ConnectionChanged);
    reportLater(tic, &Tic::ConnectionChanged, &Self::sl_onConnected);
    reportLater(tic, &Tic::si_deviceNodeAdded, &Self::si_deviceNodeAdded);
}

void AbstractServerConnectionData::replaceChannelTic(const QString &subsystem, const QString &channel,
                                                     const QString &clientPath, const VtConnectData &address)
{
    using Self = AbstractServerConnectionData;
    resetConnection(subsystem, ChannelConnection);
    Tic *const tic = addTic(subsystem, ChannelConnection, korve::path::channel + slash + channel, clientPath, address);
    tic->getConnection()->setDeleteClientTicPath(true);
    connect(tic, &Tic::ChannelConnectionEstablished, this, &Self::ChannelConnectionEstablished);
    connect(tic, &Tic::ChannelConnectionDisconnected, this, &Self::ChannelConnectionDisconnected);
    connect(tic, &Tic::ConnectionChanged, this, &Self::ConnectionChanged);
    connect(tic, &Tic::ConnectionChanged, this, &Self::sl_onConnected);
}

std::shared_ptr<KorveConfiguration> AbstractServerConnectionData::GetConfiguration()
{
    return configuration;
}

QString AbstractServerConnectionData::GetDeviceBasePath(const QString &deviceId)
{
    return GetConfiguration()->GetKorveRootPath() + korve::path::device + slash + deviceId;
}

QString AbstractServerConnectionData::GetBasePath(const QString &deviceId)
{
    return GetDeviceBasePath(deviceId) + korve::path::admin + slash;
}

QString AbstractServerConnectionData::GetStatusPath(const QString &deviceId)
{
    return GetConfiguration()->GetKorveRootPath() + korve::path::device + slash + deviceId + korve::path::status +
           slash;
}

QString AbstractServerConnectionData::GetBitePath(const QString &deviceId)
{
    return GetConfiguration()->GetKorveRootPath() + korve::path::device + slash + deviceId + korve::path::bite;
}

bool AbstractServerConnectionData::SetChannelId_ValuePath(const QString &)
{
    return false;
}

QString AbstractServerConnectionData::GetChannelId_ValuePath()
{
    return {};
}

bool AbstractServerConnectionData::SetChannelId(const QString &)
{
    return false;
}

QString AbstractServerConnectionData::GetChannelId()
{
    return {};
}

void AbstractServerConnectionData::Update(Observable *, TChangeCode) {}
} // namespace KorveCommon
