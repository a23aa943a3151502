#include "installation/program/services.h"

#include "installation/calls/servedobjects.h"
#include "installation/cco/centralobjectservice.h"
#include "installation/contracts/managernames.h"
#include "installation/manager/channelpublisher.h"
#include "installation/manager/devicepublisher.h"
#include "installation/manager/managerservice.h"
#include "installation/program/importservant.h"
#include "installation/program/namedservice.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/vtserver.h"

#include <QCoreApplication>

#include <iostream>
#include <stdexcept>

using CorbaCommon::OrbHandler;
using CorbaCommon::ServiceRegistration;

namespace installation
{

namespace
{

constexpr std::chrono::seconds centralServiceLimit{2};

/// A full reference to an object of this process, whether it exists or not; the caller releases it.
CORBA::Object_ptr referenceTo(const std::string &key, const char *interface)
{
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key.c_str());
    return OrbHandler::Instance().keyedPoa()->create_reference_with_id(id, interface);
}

QString titleOf(Role role, unsigned short port)
{
    return QStringLiteral("%1 %2:%3").arg(nameOf(role), OrbHandler::Instance().settings().published()).arg(port);
}

/// A recorder, and the way in for files.
class RecorderHost
{
public:
    explicit RecorderHost(const HostSettings &settings)
        : service(settings.recorder(), poa()), objects(poa()),
          imports(objects.make<ImportServant>(
              importKey, [this](const QString &path, const recorder::ImportControl &control) {
                  return service.importFile(path, control);
              })),
          importActivation(objects.activate(importKey, imports))
    {
    }
    ~RecorderHost()
    {
        imports->stop(); // while the servant is certain to live; whoever waits for an import is answered
        objects.refuseCalls();
        objects.waitForCalls();
        service.stop();
    }

    static NamedService::Plan plan(const HostSettings &settings)
    {
        const QString folder = QStringLiteral("KorveRecorder/%1/").arg(settings.deviceId());
        const CORBA::Object_var control =
            referenceTo(recorder::RecorderConfiguration().objectKey, TQ_KORVE::IF_Control::_PD_repoId);
        const auto claim = [folder, control](ServiceRegistration &names) {
            names.registerObject(folder + QLatin1String("IF_Control"), control);
            names.registerObject(folder + QLatin1String("IF_Import"),
                                 CORBA::Object_var(referenceTo(importKey, KORVE_INSTALLATION::IF_Import::_PD_repoId)));
        };
        return {titleOf(Role::Recorder, CorbaCommon::publishedEndpoint(control).port),
                folder + QLatin1String("IF_Control"), control, claim, [claim, settings](ServiceRegistration &names) {
                    const auto host = std::make_shared<RecorderHost>(settings);
                    claim(names);
                    return host;
                }};
    }

private:
    static constexpr const char *importKey = "KorveRecorderImport";

    static PortableServer::POA_ptr poa() { return OrbHandler::Instance().keyedPoa(); }

    recorder::RecorderService service;
    const ServedObjects objects;
    ImportServant *const imports;
    const std::shared_ptr<Activation> importActivation;
};

/// A manager, and its devices and channels in the value tree.
class ManagerHost
{
public:
    ManagerHost(const HostSettings &settings, ServiceRegistration &names)
        : service(settings.manager(), OrbHandler::Instance().keyedPoa(),
                  CCO::IF_CCO_c_var(OrbHandler::Instance().centralService(centralServiceLimit)),
                  ManagerListeners{
                      .devices = devices.listener(), .channels = channels.listener(), .record = devices.recordListener()})
    {
        // A client that has the tree looks for the manager at once, so the manager comes first. Without a central
        // object service nobody can find either.
        claimManager(names);
        names.waitUntilTried();
        tree = std::make_unique<VtServer>();
        if (!tree->isServing())
            throw std::runtime_error("the value tree cannot be served");
        claimTree(names);
    }

    static NamedService::Plan plan(const HostSettings &settings)
    {
        return {titleOf(Role::Manager, VtServer::port), QLatin1String(managerName), manager(),
                [](ServiceRegistration &names) {
                    claimManager(names);
                    claimTree(names);
                },
                [settings](ServiceRegistration &names) { return std::make_shared<ManagerHost>(settings, names); }};
    }

private:
    static CORBA::Object_ptr manager()
    {
        return referenceTo(ManagerService::objectKey, TQ_KRV::IF_KRV_c_KRV::_PD_repoId);
    }
    static void claimManager(ServiceRegistration &names)
    {
        names.registerObject(QLatin1String(managerName), CORBA::Object_var(manager()));
    }
    static void claimTree(ServiceRegistration &names)
    {
        names.registerEndpoint(QLatin1String(managersTreeName), VtServer::port);
    }

    DevicePublisher devices;
    ChannelPublisher channels;
    ManagerService service;
    std::unique_ptr<VtServer> tree;
};

} // namespace

class Services::Private
{
public:
    explicit Private(const HostSettings &settings) : settings(settings) {}

    void start(Role role);

    std::exception_ptr failure;

private:
    void startCentralService();
    std::unique_ptr<NamedService> started(NamedService::Plan plan);

    const HostSettings settings;
    // Each service registers its names by itself, since what is refused to one is none of the other's names.
    std::unique_ptr<CentralObjectService> centralService;
    std::unique_ptr<NamedService> recorder;
    std::unique_ptr<NamedService> manager;
};

void Services::Private::start(Role role)
{
    switch (role) {
    case Role::CentralService:
        return startCentralService();
    case Role::Recorder:
        recorder = started(RecorderHost::plan(settings));
        return;
    case Role::Manager:
        manager = started(ManagerHost::plan(settings));
        return;
    }
}

void Services::Private::startCentralService()
{
    centralService =
        std::make_unique<CentralObjectService>(settings.centralService(), OrbHandler::Instance().keyedPoa());
    const QString title = titleOf(Role::CentralService, CorbaCommon::OrbSettings::centralServicePort);
    std::cout << "ready " << title.toStdString() << std::endl;
}

std::unique_ptr<NamedService> Services::Private::started(NamedService::Plan plan)
{
    return std::make_unique<NamedService>(std::move(plan), [this](std::exception_ptr thrown) {
        failure = std::move(thrown);
        QCoreApplication::quit();
    });
}

Services::Services(const QList<Role> &roles, const HostSettings &settings) : d(std::make_unique<Private>(settings))
{
    for (const Role role : roles)
        d->start(role);
}

Services::~Services() = default;

int Services::run() const
{
    const int exitCode = QCoreApplication::exec();
    if (d->failure)
        std::rethrow_exception(d->failure);
    return exitCode;
}

} // namespace installation
