#include "installation/manager/managerservice.h"

#include "installation/calls/servedobjects.h"
#include "installation/manager/channelservice.h"
#include "installation/manager/clientcallbacks.h"
#include "installation/manager/managerservant.h"

namespace installation
{

class ManagerService::Private
{
public:
    Private(const ManagerConfiguration &configuration, PortableServer::POA_ptr poa, CCO::IF_CCO_c_ptr service,
            ManagerListeners listeners)
        : directory(std::make_shared<DeviceDirectory>(DeviceWatch::knownFrom(configuration.stateFolder))),
          objects(poa), admin(objects.serve<AdminServant>("KorveManagerAdmin", directory, configuration.timing.callLimit,
                                                          std::move(listeners.record))),
          channels(std::make_shared<ChannelService>(configuration, objects, directory, std::move(listeners.channels))),
          exports(std::make_shared<Exports>(objects, directory, configuration.timing)),
          manager(objects.serve<ManagerServant>(objectKey, configuration, directory,
                                                CORBA::Object_var(admin->reference()), channels, exports)),
          callbacks(std::make_shared<ClientCallbacks>(service, configuration.timing)),
          watch(std::in_place, configuration, service, directory,
                RecordWatch(objects, statesFor(configuration, callbacks)),
                [callbacks = callbacks, listener = std::move(listeners.devices)](const DeviceList &devices) {
                    callbacks->tellStorage(devices);
                    if (listener)
                        listener(devices);
                })
    {
    }

    void stop();

    static std::shared_ptr<RecordStates> statesFor(const ManagerConfiguration &configuration,
                                                   const std::shared_ptr<ClientCallbacks> &callbacks)
    {
        return std::make_shared<RecordStates>(configuration.stateFolder,
                                              [callbacks](const RecordState &state) { callbacks->tellState(state); });
    }

    const std::shared_ptr<DeviceDirectory> directory;
    const ServedObjects objects;
    const std::shared_ptr<Activation> admin;
    const std::shared_ptr<ChannelService> channels;
    const std::shared_ptr<Exports> exports;
    const std::shared_ptr<Activation> manager;
    const std::shared_ptr<ClientCallbacks> callbacks;
    std::optional<DeviceWatch> watch;
};

void ManagerService::Private::stop()
{
    objects.refuseCalls();
    objects.waitForCalls();
    exports->stop();
    watch.reset();
    callbacks->stop();
    channels->stop();
}

ManagerService::ManagerService(const ManagerConfiguration &configuration, PortableServer::POA_ptr poa,
                               CCO::IF_CCO_c_ptr service, ManagerListeners listeners)
    : d(std::make_unique<Private>(configuration, poa, service, std::move(listeners)))
{
}

ManagerService::~ManagerService()
{
    stop();
}

void ManagerService::stop()
{
    d->stop();
}

CORBA::Object_ptr ManagerService::reference() const
{
    return d->manager->reference();
}

} // namespace installation
