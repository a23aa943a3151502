#include "apps/korvectl/managersession.h"

#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "connectionmanagement/recordlisterror.h"
#include "korvebase/korveconfiguration.h"
#include "orbconnection/orbhandler.h"

#include <algorithm>

using CorbaCommon::OrbHandler;
using KorveCommon::HMIServerConnectionData;
using KorveGUI::KorveGuiToServerCorbaHandler;
using std::chrono::milliseconds;

namespace korvectl
{

namespace
{

unsigned long long beginOf(const KORVE_XML::KORVE_RecordData &record)
{
    return record.GetStartTime();
}

} // namespace

class ManagerSession::Private
{
public:
    Private(const CentralService &service, const QString &subsystem, const Deadline &deadline)
        : serviceAddress(service.address()), subsystem(subsystem)
    {
        OrbHandler &orb = OrbHandler::Instance();
        // So it becomes the current one without tics to all subsystems, each of which may keep us waiting.
        station->GetConfiguration()->SetCurrentSubSystem(subsystem);
        const bool isFound = deadline.comesTrue([&](milliseconds left) {
            orb.setCallTimeout(left);
            // Asked first, so that nobody looks for the manager at a service that has not been heard of, and traces that.
            return orb.CCOIsAvailable() && handler->ReconnectToServer() && managerAnswers();
        });
        if (!isFound)
            throw service.noManager(subsystem, deadline);
    }

    /// Turns what goes wrong with a call of the manager into the words for it.
    template <typename Call> auto ask(const Call &call) const
    {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler->GetKorveInterface();
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

    QString silence() const
    {
        return QStringLiteral("The recorder manager that %1 named does not answer any more").arg(serviceAddress);
    }

    const QString serviceAddress;
    const QString subsystem;
    const std::shared_ptr<HMIServerConnectionData> station = std::make_shared<HMIServerConnectionData>(QString());
    const std::shared_ptr<KorveGuiToServerCorbaHandler> handler =
        std::make_shared<KorveGuiToServerCorbaHandler>(QString(), station, QString());

private:
    /// A name may outlive its manager for a while: one that does not answer is dropped, to be looked for again.
    bool managerAnswers()
    {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler->GetKorveInterface();
        try {
            CORBA::string_free(manager->getWorkstationName());
            return true;
        } catch (const CORBA::SystemException &) {
            handler->Shutdown();
            return false;
        }
    }
};

ManagerSession::ManagerSession(const CentralService &service, const QString &subsystem, milliseconds timeout)
    : d([&] {
          const Deadline deadline(timeout);
          // Before anything watches the service, since that would ask it beside us.
          const QString localSubsystem = service.localSubsystem(deadline);
          return std::make_unique<Private>(service, subsystem.isEmpty() ? localSubsystem : subsystem, deadline);
      }())
{
    OrbHandler::Instance().setCallTimeout(timeout);
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

const std::shared_ptr<KorveGuiToServerCorbaHandler> &ManagerSession::handler() const
{
    return d->handler;
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
    using namespace KorveGUI;
    Records records;
    switch (d->handler->getAllRecords(deviceId, records)) {
    case recordlist::success:
        std::stable_sort(records.begin(), records.end(),
                         [](const auto &left, const auto &right) { return beginOf(left) < beginOf(right); });
        return records;
    case recordlist::managerNotReachable:
        throw Failure(ExitCode::NotReachable,
                      QStringLiteral("The records of %1 cannot be had: the recorder manager that %2 named, or the "
                                     "device, does not answer.")
                          .arg(deviceId, d->serviceAddress));
    case recordlist::deviceUnknown:
        throw Failure(ExitCode::Refused, QStringLiteral("The recorder manager knows no device %1.").arg(deviceId));
    case recordlist::refused:
        throw Failure(ExitCode::Refused, reasonOfRefusal(deviceId));
    default:
        throw Failure(ExitCode::Failed,
                      QStringLiteral("The records of %1 could not be fetched; -v shows why.").arg(deviceId));
    }
}

QString ManagerSession::reasonOfRefusal(const QString &deviceId) const
{
    const QString text = QStringLiteral("The recorder manager cannot list the records of %1: %2.");
    const DeviceState state = device(deviceId);
    return state.isAvailable
               ? text.arg(deviceId, QStringLiteral("the device does not answer it, or refused; `korvectl doctor` looks for the cause"))
               : text.arg(deviceId, QStringLiteral("the device, last seen at %1, is not available").arg(state.address));
}

} // namespace korvectl
