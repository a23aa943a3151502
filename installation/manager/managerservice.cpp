#include "installation/manager/managerservice.h"

#include "installation/cco/activation.h"
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
          admin(poa, "KorveManagerAdmin",
                new AdminServant(directory, configuration.timing.callLimit, std::move(listeners.record))),
          channels(std::make_shared<ChannelService>(configuration, poa, directory, std::move(listeners.channels))),
          manager(poa, "KorveManager",
                  new ManagerServant(configuration, directory, CORBA::Object_var(admin.reference()), channels,
                                     std::make_shared<Exports>(poa, directory, configuration.timing))),
          callbacks(std::make_shared<ClientCallbacks>(service, configuration.timing)),
          watch(configuration, service, directory, RecordWatch(poa, statesFor(configuration, callbacks)),
                [callbacks = callbacks, listener = std::move(listeners.devices)](const DeviceList &devices) {
                    callbacks->tellStorage(devices);
                    if (listener)
                        listener(devices);
                })
    {
    }

    /// Whoever gets a notification last keeps the callbacks with the states.
    static std::shared_ptr<RecordStates> statesFor(const ManagerConfiguration &configuration,
                                                   const std::shared_ptr<ClientCallbacks> &callbacks)
    {
        return std::make_shared<RecordStates>(configuration.stateFolder,
                                              [callbacks](const RecordState &state) { callbacks->tellState(state); });
    }

    const std::shared_ptr<DeviceDirectory> directory;
    const Activation admin;
    const std::shared_ptr<ChannelService> channels;
    const Activation manager;
    const std::shared_ptr<ClientCallbacks> callbacks;
    const DeviceWatch watch;
};

ManagerService::ManagerService(const ManagerConfiguration &configuration, PortableServer::POA_ptr poa,
                               CCO::IF_CCO_c_ptr service, ManagerListeners listeners)
    : d(std::make_unique<Private>(configuration, poa, service, std::move(listeners)))
{
}

ManagerService::~ManagerService() = default;

CORBA::Object_ptr ManagerService::reference() const
{
    return d->manager.reference();
}

} // namespace installation
