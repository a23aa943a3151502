#include "tests/connectionmanagement/liveinstallation.h"

#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QTest>

using namespace CorbaCommon;

namespace
{
const char *const managerName = "KorveManager/IF_KRV_c_KRV";

OrbHandler &configuredOrb(const QString &address)
{
    static const bool configured = [&] {
        OrbSettings settings = OrbSettings::fromEnvironment();
        settings.address = address;
        settings.centralService = address;
        settings.connectTimeout = std::chrono::milliseconds(1000);
        return OrbHandler::configure(settings);
    }();
    Q_UNUSED(configured)
    return OrbHandler::Instance();
}

std::unique_ptr<ServiceProcess> serviceAt(const QString &address, const QString &subsystem, const QString &peer)
{
    return std::make_unique<ServiceProcess>(QStringLiteral(CENTRAL_SERVICE_PROGRAM),
                                            QStringList{address, subsystem, address, peer});
}
} // namespace

LiveInstallation::LiveInstallation() : orb(configuredOrb(address())), manager(orb.keyedPoa())
{
    manager.workstation = address().toStdString();
    const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(&manager);
    managerReference = manager._this();
    startService();
}

LiveInstallation::~LiveInstallation()
{
    const PortableServer::ObjectId_var id = orb.rootPoa()->servant_to_id(&manager);
    orb.rootPoa()->deactivate_object(id);
}

const QString &LiveInstallation::address()
{
    static const LoopbackLease lease;
    return lease.address();
}

const QString &LiveInstallation::neighbourAddress()
{
    static const LoopbackLease lease;
    return lease.address();
}

void LiveInstallation::startService()
{
    runService();
    ASSERT_TRUE(orb.ConnectToCCO(20, 50));
}

void LiveInstallation::runService()
{
    service = serviceAt(address(), QStringLiteral("Alpha"), neighbourAddress());
}

void LiveInstallation::startNeighbour()
{
    neighbour = serviceAt(neighbourAddress(), QStringLiteral("West"), address());
    ASSERT_TRUE(comesTrue([this] { return orb.GetAllSubsystems().contains(QStringLiteral("West")); }));
}

void LiveInstallation::registerManager(const QString &host)
{
    const CCO::IF_CCO_c_var cco = centralService(host);
    cco->Register(managerName, managerReference, 0);
}

void LiveInstallation::unregisterManager()
{
    const CCO::IF_CCO_c_var cco = centralService(address());
    const CORBA::Object_var taken = cco->Unregister(managerName, 0);
}

void LiveInstallation::announceTree()
{
    const CCO::IF_CCO_c_var cco = centralService(address());
    CCO::seqString values;
    values.length(1);
    values[0] = "here";
    cco->RegisterValues("KorveManager/VTConnect", values, 0);
}

CCO::IF_CCO_c_ptr LiveInstallation::centralService(const QString &host) const
{
    const CORBA::Object_var object = orb.orb()->string_to_object(centralServiceReference(host).toLatin1().constData());
    return CCO::IF_CCO_c::_unchecked_narrow(object);
}

bool LiveInstallation::comesTrue(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}
