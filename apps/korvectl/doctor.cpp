#include "apps/korvectl/doctor.h"

#include "apps/korvectl/diagnosis.h"
#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/recorderdisk.h"
#include "apps/korvectl/units.h"

#include "korvebase/valuetreepaths.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/refusednames.h"

using std::chrono::milliseconds;

namespace korvectl
{

namespace
{

QString addressOf(CORBA::Object_ptr object)
{
    const CorbaCommon::Endpoint endpoint = CorbaCommon::publishedEndpoint(object);
    return QStringLiteral("%1:%2").arg(endpoint.host).arg(endpoint.port);
}

} // namespace

Doctor::Doctor(const CentralService &service, const QString &subsystem, milliseconds timeout, Tell tell)
    : service(service), timeout(timeout), tell(std::move(tell)), subsystem(subsystem)
{
}

Doctor::~Doctor() = default;

bool Doctor::examine()
{
    if (!checkCentralService() || !checkManager() || !checkTree() || !checkDevices())
        return false;
    for (const QString &device : std::as_const(devices))
        if (!checkRecorder(device) || !checkStorage(device) || !checkFiles(device) || !checkDevice(device))
            return false;
    return checkNames();
}

bool Doctor::check(const QString &name, const QString &address, const Look &look)
{
    Link link;
    link.name = name;
    link.address = address;
    const auto begin = Deadline::Clock::now();
    const Deadline deadline(timeout);
    const bool isSound = deadline.comesTrue([&](milliseconds left) {
        try {
            return look(link, left);
        } catch (const CORBA::Exception &) {
            // Silence is another matter than what was found before; but a look with less than half of the time may fail
            // only for want of time.
            const bool hadLittleTime = left * 2 < timeout;
            if (!hadLittleTime)
                link.complaint.clear();
            return false;
        }
    });
    link.elapsed = std::chrono::duration_cast<std::chrono::microseconds>(Deadline::Clock::now() - begin);
    if (isSound)
        link.complaint = link.remedy = QString();
    else if (link.complaint.isEmpty())
        diagnoseSilence(link, deadline.words());
    tell(link);
    return isSound;
}

bool Doctor::checkCentralService()
{
    return check(QStringLiteral("central object service"), service.address(), [this](Link &link, milliseconds left) {
        const QString local =
            QString::fromUtf8(CORBA::String_var(CCO::IF_CCO_c_var(service.reference(left))->GetSubSystemName()));
        link.finding = QStringLiteral("of subsystem %1").arg(local);
        if (subsystem.isEmpty())
            subsystem = local;
        return true;
    });
}

bool Doctor::checkManager()
{
    return check(QStringLiteral("recorder manager"), QString(),
                 [this](Link &link, milliseconds left) { return askManager(link, left); });
}

bool Doctor::askManager(Link &link, milliseconds left)
{
    manager = service.manager(subsystem, left);
    if (CORBA::is_nil(manager)) {
        link.address = service.address();
        link.complaint = QStringLiteral("The central object service at %1 names no recorder manager of subsystem %2.")
                             .arg(link.address, subsystem);
        link.remedy = QStringLiteral("Start the manager of that subsystem, or ask for another one with --subsystem; "
                                     "known here: %1.")
                          .arg(service.subsystems(left).join(QLatin1String(", ")));
        return false;
    }
    link.address = managerAddress = addressOf(manager);
    workstation = QString::fromUtf8(CORBA::String_var(manager->getWorkstationName()));
    link.finding = QStringLiteral("on workstation %1").arg(workstation);
    return true;
}

bool Doctor::checkTree()
{
    const auto look = [this](Link &link, milliseconds left) {
        VtConnectData server{workstation, QString()};
        if (!VtConnectionObserver::GetFirstIPAddressOfHostNameStatic(workstation, server.ipAddress, true)) {
            link.complaint = QStringLiteral("The manager's workstation, %1, has no address here.").arg(workstation);
            link.remedy =
                QStringLiteral("Add the name to the name service or to /etc/hosts, or have the manager's host "
                               "use its address as [host] workstation=.");
            return false;
        }
        link.address = textOf(server);
        const bool isMirrored = mirrored(server, korve::path::connection, left) != nullptr;
        link.finding = QStringLiteral("can be mirrored");
        return isMirrored;
    };
    return check(QStringLiteral("value tree"), QString(), look);
}

bool Doctor::checkDevices()
{
    return check(QStringLiteral("list of devices"), managerAddress, [this](Link &link, milliseconds left) {
        const TQ_KRV::IF_KRV_c_KRV_var asked = CorbaCommon::withCallLimit<TQ_KRV::IF_KRV_c_KRV>(manager, left);
        const TQ_KRV::seqString_var ids = asked->getAllDevices();
        for (CORBA::ULong position = 0; position < ids->length(); ++position)
            devices << QString::fromUtf8(ids.in()[position]);
        devices.sort();
        link.finding = devices.join(QLatin1String(", "));
        link.complaint = QStringLiteral("The recorder manager at %1 knows no device.").arg(managerAddress);
        link.remedy = QStringLiteral("Start a recorder that registers at the central object service at %1.")
                          .arg(service.address());
        return !devices.isEmpty();
    });
}

bool Doctor::checkRecorder(const QString &device)
{
    return check(QStringLiteral("recorder %1").arg(device), QString(),
                 [&](Link &link, milliseconds left) { return askRecorder(device, link, left); });
}

bool Doctor::askRecorder(const QString &device, Link &link, milliseconds left)
{
    const TQ_KORVE::IF_Control_var recorder = service.recorder(subsystem, device, left);
    if (CORBA::is_nil(recorder)) {
        link.address = service.address();
        link.complaint =
            QStringLiteral("The central object service at %1 names no recorder %2, which the manager knows "
                           "as a device.")
                .arg(link.address, device);
        link.remedy = QStringLiteral("Start the recorder %1; it registers by itself every 2 s.").arg(device);
        return false;
    }
    link.address = recorderAddress = addressOf(recorder);
    link.finding =
        QStringLiteral("firmware %1").arg(QString::fromUtf8(CORBA::String_var(recorder->getFirmwareVersion())));
    return true;
}

bool Doctor::checkStorage(const QString &device)
{
    const auto look = [&](Link &link, milliseconds left) {
        try {
            const TQ_KORVE::IF_Control_var recorder = service.recorder(subsystem, device, left);
            const TQ_KORVE::struMASS_STORE_STATUS_var storage = recorder->getMassStoreStatus();
            link.finding = wordsFor(storage.in());
            link.complaint = QStringLiteral("The disk of recorder %1 has too little room: %2; it should be %3.")
                                 .arg(device, link.finding, units::bytes(leastFreeBytes));
            link.remedy = QStringLiteral("Delete records that are not needed, or make room on that disk.");
            return hasRoom(storage.in());
        } catch (const TQ_KORVE::exKorve &refusal) {
            link.complaint = QStringLiteral("The recorder %1 has no storage: %2.").arg(device, QString::fromUtf8(refusal.text));
            link.remedy = QStringLiteral("Bring its folder back, with the records that were in it, and start it again.");
            return false;
        }
    };
    return check(QStringLiteral("storage %1").arg(device), recorderAddress, look);
}

bool Doctor::checkFiles(const QString &device)
{
    return check(QStringLiteral("files %1").arg(device), recorderAddress, [&](Link &link, milliseconds left) {
        const TQ_KORVE::IF_Control_var recorder = service.recorder(subsystem, device, left);
        const QVector<RefusedFile> refused = refusedFiles(recorder);
        link.finding = QStringLiteral("all are records");
        link.complaint = QStringLiteral("The recorder %1 refuses files in its folder: %2.").arg(device, namesOf(refused));
        link.remedy = QStringLiteral("Mend these files, or move them away from there, and start the recorder again.");
        return refused.isEmpty();
    });
}

bool Doctor::checkDevice(const QString &device)
{
    return check(QStringLiteral("device %1").arg(device), managerAddress, [&](Link &link, milliseconds left) {
        const TQ_KRV::IF_KRV_c_KRV_var asked = CorbaCommon::withCallLimit<TQ_KRV::IF_KRV_c_KRV>(manager, left);
        CORBA::ULong state = 0;
        CORBA::string_free(asked->getDeviceInformation(device.toUtf8().constData(), state));
        link.finding = QStringLiteral("available");
        link.complaint = QStringLiteral("The recorder manager at %1 says that device %2 is not available, though its "
                                        "recorder answers here.")
                             .arg(managerAddress, device);
        link.remedy = QStringLiteral("Check that the manager's host reaches the recorder at the address above.");
        return state != 0;
    });
}

bool Doctor::checkNames()
{
    return check(QStringLiteral("names"), service.address(), [this](Link &link, milliseconds left) {
        const QString folder = CentralService::pathOf(subsystem, QLatin1String(CorbaCommon::refusedNames));
        QStringList rivals;
        for (const QString &refusal : service.values(folder, left)) {
            const int end = refusal.lastIndexOf(u'/'); // NAME/HOST:PORT
            const QString name = refusal.left(end);
            rivals << QStringLiteral("%1 has the name %2, which %3 wants, too")
                          .arg(holderOf(CentralService::pathOf(subsystem, name), left), name, refusal.mid(end + 1));
        }
        link.finding = QStringLiteral("each is wanted once");
        link.complaint = rivals.join(QLatin1String("; ")) + u'.';
        link.remedy = QStringLiteral("Give one of two recorders another device id ([recorder] device=), or end one of two "
                                     "managers.");
        return rivals.isEmpty();
    });
}

QString Doctor::holderOf(const QString &path, milliseconds left) const
{
    const CORBA::Object_var object = service.resolve(path, left);
    return CORBA::is_nil(object) ? service.values(path, left).join(u':') : addressOf(object);
}

} // namespace korvectl
