#include "installation/program/services.h"

#include "installation/calls/servedobjects.h"
#include "installation/cco/centralobjectservice.h"
#include "installation/manager/channelpublisher.h"
#include "installation/manager/devicepublisher.h"
#include "installation/manager/managerservice.h"
#include "installation/program/importservant.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/serviceregistration.h"
#include "orbconnection/vtserver.h"

#include <iostream>
#include <stdexcept>

using CorbaCommon::OrbHandler;

namespace installation
{

namespace
{

constexpr std::chrono::seconds centralServiceLimit{2};

/// A recorder, and the way in for files.
class RecorderHost
{
public:
    RecorderHost(const HostSettings &settings, PortableServer::POA_ptr poa, CorbaCommon::ServiceRegistration &names)
        : service(settings.recorder(), poa), objects(poa),
          imports(objects.make<ImportServant>(
              importKey, [this](const QString &path, const recorder::ImportControl &control) {
                  return service.importFile(path, control);
              })),
          importActivation(objects.activate(importKey, imports))
    {
        const QString prefix = QStringLiteral("KorveRecorder/%1/").arg(settings.deviceId());
        names.registerObject(prefix + QLatin1String("IF_Control"), CORBA::Object_var(service.reference()));
        names.registerObject(prefix + QLatin1String("IF_Import"), CORBA::Object_var(importActivation->reference()));
    }
    ~RecorderHost()
    {
        imports->stop(); // while the servant is certain to live; whoever waits for an import is answered
        objects.refuseCalls();
        objects.waitForCalls();
        service.stop();
    }

    CORBA::Object_ptr reference() const { return service.reference(); }

private:
    static constexpr const char *importKey = "KorveRecorderImport";

    recorder::RecorderService service;
    const ServedObjects objects;
    ImportServant *const imports;
    const std::shared_ptr<Activation> importActivation;
};

/// A manager, and its devices and channels in the value tree.
class ManagerHost
{
public:
    ManagerHost(const HostSettings &settings, PortableServer::POA_ptr poa, CorbaCommon::ServiceRegistration &names)
        : service(
              settings.manager(), poa, CCO::IF_CCO_c_var(OrbHandler::Instance().centralService(centralServiceLimit)),
              ManagerListeners{
                  .devices = devices.listener(), .channels = channels.listener(), .record = devices.recordListener()})
    {
        // A client that has the tree looks for the manager at once, so the manager comes first. Without a central
        // object service nobody can find either.
        names.registerObject(QStringLiteral("KorveManager/IF_KRV_c_KRV"), CORBA::Object_var(service.reference()));
        names.waitUntilTried();
        tree = std::make_unique<VtServer>();
        if (!tree->isServing())
            throw std::runtime_error("the value tree cannot be served");
        names.registerEndpoint(QStringLiteral("KorveManager/VTConnect"), VtServer::port);
    }

private:
    DevicePublisher devices;
    ChannelPublisher channels;
    ManagerService service;
    std::unique_ptr<VtServer> tree;
};

void sayReady(Role role, unsigned short port)
{
    const QString host = OrbHandler::Instance().settings().published();
    std::cout << "ready " << nameOf(role).toStdString() << ' ' << host.toStdString() << ':' << port << std::endl;
}

} // namespace

class Services::Private
{
public:
    explicit Private(const HostSettings &settings) : settings(settings) {}

    void start(Role role);

private:
    void startCentralService();
    void startRecorder();
    void startManager();
    static PortableServer::POA_ptr poa() { return OrbHandler::Instance().keyedPoa(); }

    const HostSettings settings;
    std::unique_ptr<CentralObjectService> centralService;
    std::unique_ptr<RecorderHost> recorder;
    std::unique_ptr<ManagerHost> manager;
    // Last, since names go before what they stand for; apart, since what is refused to one is none of the other's names.
    CorbaCommon::ServiceRegistration recorderNames;
    CorbaCommon::ServiceRegistration managerNames;
};

void Services::Private::start(Role role)
{
    switch (role) {
    case Role::CentralService:
        return startCentralService();
    case Role::Recorder:
        return startRecorder();
    case Role::Manager:
        return startManager();
    }
}

void Services::Private::startCentralService()
{
    centralService = std::make_unique<CentralObjectService>(settings.centralService(), poa());
    sayReady(Role::CentralService, CorbaCommon::OrbSettings::centralServicePort);
}

void Services::Private::startRecorder()
{
    recorder = std::make_unique<RecorderHost>(settings, poa(), recorderNames);
    const CORBA::Object_var reference = recorder->reference();
    sayReady(Role::Recorder, CorbaCommon::publishedEndpoint(reference).port);
}

void Services::Private::startManager()
{
    manager = std::make_unique<ManagerHost>(settings, poa(), managerNames);
    sayReady(Role::Manager, VtServer::port);
}

Services::Services(const QList<Role> &roles, const HostSettings &settings) : d(std::make_unique<Private>(settings))
{
    for (const Role role : roles)
        d->start(role);
}

Services::~Services() = default;

} // namespace installation
