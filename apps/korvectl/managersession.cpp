#include "apps/korvectl/managersession.h"

#include "apps/korvectl/failure.h"

#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "korvebase/korveconfiguration.h"
#include "orbconnection/orbhandler.h"

#include <algorithm>
#include <functional>
#include <thread>

using CorbaCommon::OrbHandler;
using CorbaCommon::OrbSettings;
using KorveCommon::HMIServerConnectionData;
using KorveGUI::KorveGuiToServerCorbaHandler;
using std::chrono::milliseconds;

namespace korvectl
{

namespace
{

using Clock = std::chrono::steady_clock;

// What KorveGuiToServerCorbaHandler::getAllRecords() answers.
constexpr unsigned long success = 0;
constexpr unsigned long managerNotReachable = 201;
constexpr unsigned long deviceUnknown = 202;
constexpr unsigned long recordsRefused = 203;

/// Where the central object service is looked for.
QString centralServiceAddress()
{
    const QString address = OrbHandler::Instance().settings().centralService;
    return address.contains(u':') ? address : QStringLiteral("%1:%2").arg(address).arg(OrbSettings::centralServicePort);
}

QString seconds(milliseconds time)
{
    return QString::number(static_cast<double>(time.count()) / 1000);
}

void startOrb(milliseconds timeout)
{
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.callTimeout = timeout;
    settings.connectTimeout = std::min(settings.connectTimeout, timeout);
    OrbHandler::configure(settings);
    if (!OrbHandler::Instance().isRunning())
        throw Failure(ExitCode::Failed,
                      QStringLiteral("There are no network connections from address %1; KORVE_ADDRESS "
                                     "has to be one of this host.")
                          .arg(settings.address));
}

/// Asks until @p answered, which is given the time that is left, says yes. False when time is up.
bool comesTrue(Clock::time_point deadline, const std::function<bool(milliseconds)> &answered)
{
    constexpr milliseconds pause{100};
    while (true) {
        const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero())
            return false;
        if (answered(left))
            return true;
        std::this_thread::sleep_for(std::min(pause, left));
    }
}

/// The name of the local subsystem, by which the central object service shows that it is there.
QString waitForCentralService(Clock::time_point deadline, milliseconds timeout)
{
    QString name;
    const bool answered = comesTrue(deadline, [&](milliseconds left) {
        try {
            const CCO::IF_CCO_c_var service = OrbHandler::Instance().centralService(left);
            name = QString::fromUtf8(CORBA::String_var(service->GetSubSystemName()));
            return true;
        } catch (const CORBA::SystemException &) {
            return false;
        }
    });
    if (!answered)
        throw Failure(ExitCode::NotReachable,
                      QStringLiteral("The central object service at %1 did not answer within %2 s.")
                          .arg(centralServiceAddress(), seconds(timeout)));
    return name;
}

unsigned long long beginOf(const KORVE_XML::KORVE_RecordData &record)
{
    return record.GetStartTime();
}

} // namespace

class ManagerSession::Private
{
public:
    Private(const QString &subsystem, Clock::time_point deadline, milliseconds timeout) : subsystem(subsystem)
    {
        OrbHandler &orb = OrbHandler::Instance();
        // So it becomes the current one without tics to all subsystems, each of which may keep us waiting.
        station->GetConfiguration()->SetCurrentSubSystem(subsystem);
        const bool isFound = comesTrue(deadline, [&](milliseconds left) {
            orb.setCallTimeout(left);
            return handler.ReconnectToServer() && managerAnswers();
        });
        if (!isFound)
            throw Failure(ExitCode::NotReachable, QStringLiteral("The central object service at %1 named no recorder "
                                                                 "manager of subsystem %2 that answered within %3 s.")
                                                      .arg(centralServiceAddress(), subsystem, seconds(timeout)));
        orb.setCallTimeout(timeout);
    }

    /// Turns what goes wrong with a call of the manager into the words for it.
    template <typename Call> auto ask(const Call &call) const
    {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler.GetKorveInterface();
        if (CORBA::is_nil(manager))
            throw Failure(ExitCode::NotReachable, silence() + u'.');
        try {
            return call(manager.in());
        } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &refusal) {
            throw Failure(ExitCode::Refused,
                          QStringLiteral("The recorder manager refused: %1.").arg(QString::fromUtf8(refusal.text)));
        } catch (const CORBA::SystemException &error) {
            throw Failure(ExitCode::NotReachable,
                          silence() + QStringLiteral(" (%1).").arg(QLatin1String(error._name())));
        }
    }

    static QString silence()
    {
        return QStringLiteral("The recorder manager that %1 named does not answer any more")
            .arg(centralServiceAddress());
    }

    const QString subsystem;
    const std::shared_ptr<HMIServerConnectionData> station = std::make_shared<HMIServerConnectionData>(QString());
    mutable KorveGuiToServerCorbaHandler handler{QString(), station, QString()};

private:
    /// A name may outlive its manager for a while: one that does not answer is dropped, to be looked for again.
    bool managerAnswers()
    {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler.GetKorveInterface();
        try {
            CORBA::string_free(manager->getWorkstationName());
            return true;
        } catch (const CORBA::SystemException &) {
            handler.Shutdown();
            return false;
        }
    }
};

ManagerSession::ManagerSession(const QString &subsystem, milliseconds timeout)
    : d([&] {
          startOrb(timeout);
          const auto deadline = Clock::now() + timeout;
          // Before anything watches the service, since that would ask it beside us.
          const QString localSubsystem = waitForCentralService(deadline, timeout);
          return std::make_unique<Private>(subsystem.isEmpty() ? localSubsystem : subsystem, deadline, timeout);
      }())
{
}

ManagerSession::~ManagerSession() = default;

const QString &ManagerSession::subsystem() const
{
    return d->subsystem;
}

KorveCommon::AbstractServerConnectionData &ManagerSession::holdTreeConnections()
{
    KorveCommon::IServerConnectionData &connections = *d->station;
    connections.CreateVTConnectTics(d->subsystem); // of this one subsystem; others might keep us waiting
    return *d->station;
}

QStringList ManagerSession::deviceIds() const
{
    return d->ask([](TQ_KRV::IF_KRV_c_KRV_ptr manager) {
        const TQ_KRV::seqString_var devices = manager->getAllDevices();
        QStringList ids;
        for (CORBA::ULong position = 0; position < devices->length(); ++position)
            ids << QString::fromUtf8(devices.in()[position]);
        ids.sort();
        return ids;
    });
}

DeviceState ManagerSession::device(const QString &id) const
{
    return d->ask([&](TQ_KRV::IF_KRV_c_KRV_ptr manager) {
        const QByteArray name = id.toLatin1();
        CORBA::ULong state = 0;
        const CORBA::String_var firmware = manager->getDeviceInformation(name, state);
        const CORBA::String_var address = manager->mapDeviceIdToAddress(name);
        return DeviceState{id, QString::fromUtf8(address), QString::fromUtf8(firmware), state != 0};
    });
}

ManagerSession::Records ManagerSession::records(const QString &deviceId) const
{
    Records records;
    switch (d->handler.getAllRecords(deviceId, records)) {
    case success:
        std::stable_sort(records.begin(), records.end(),
                         [](const auto &left, const auto &right) { return beginOf(left) < beginOf(right); });
        return records;
    case managerNotReachable:
        throw Failure(ExitCode::NotReachable, d->silence() + u'.');
    case deviceUnknown:
        throw Failure(ExitCode::Refused, QStringLiteral("The recorder manager knows no device %1.").arg(deviceId));
    case recordsRefused:
        throw Failure(
            ExitCode::Refused,
            QStringLiteral("The recorder manager cannot list the records of %1; -v shows why.").arg(deviceId));
    default:
        throw Failure(ExitCode::Failed,
                      QStringLiteral("The records of %1 could not be fetched; -v shows why.").arg(deviceId));
    }
}

} // namespace korvectl
