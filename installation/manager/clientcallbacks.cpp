#include "installation/manager/clientcallbacks.h"

#include "installation/cco/orbaccess.h"
#include "installation/manager/storagestatus.h"

#include "coresupport/trace.h"
#include "objectbase/exceptions.h"

#include <utility>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/clientcallbacks";

template <typename Interface> CallbackClients::Narrow narrowTo(std::chrono::milliseconds limit)
{
    return [limit](CORBA::Object_ptr object) { return withCallLimit<Interface>(object, limit); };
}

/// Without result for a device that tells what no XML can carry.
std::optional<QString> xmlOf(const Device &device)
{
    try {
        return storageStatusXml(device);
    } catch (const REPORTGENERATOR::ReportException &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("the storage of device %1 is not told: %2")
                .arg(device.id, QString::fromUtf8(error.what()));
        });
        return {};
    }
}

} // namespace

ClientCallbacks::ClientCallbacks(CCO::IF_CCO_c_ptr service, const ManagerConfiguration::Timing &timing)
    : stateClients(RegisteredObjects(service, "KorveManager/Callbacks/", timing.statusLimit),
                   narrowTo<TQ_KRV::IF_RecordStateChangeCallback>(timing.clientLimit)),
      storageClients(RegisteredObjects(service, "KorveManager/StatusCallbacks/", timing.statusLimit),
                     narrowTo<TQ_KRV::IF_KorveStatusCallback>(timing.clientLimit), [this] { return storageNow(); }),
      looks(timing.lookInterval, [this] {
          stateClients.look();
          storageClients.look();
      })
{
}

void ClientCallbacks::tellState(const RecordState &state)
{
    const auto call = [device = state.device.toStdString(), record = state.record.toStdString(),
                       name = state.name.toLatin1().toStdString(), // the code set that the ORB declares for a string
                       status = state.status](CORBA::Object_ptr client) {
        // It is of this interface already, so this makes no reference that would lack the limit.
        const TQ_KRV::IF_RecordStateChangeCallback_var own(
            TQ_KRV::IF_RecordStateChangeCallback::_unchecked_narrow(client));
        own->NotifyStateChange(device.c_str(), record.c_str(), name.c_str(), status);
    };
    stateClients.tell({"the state of " + state.record.toStdString(), call});
}

void ClientCallbacks::tellStorage(const DeviceList &devices)
{
    std::vector<CallbackClients::Message> news;
    for (const Device &device : devices) {
        if (device.status.firmwareVersion.isEmpty()) // it has not answered yet
            continue;
        const std::optional<QString> xml = xmlOf(device);
        const std::scoped_lock lock(mutex);
        if (xml && std::exchange(storage[device.id], *xml) != *xml)
            news.push_back(storageMessage(device.id, *xml));
    }
    for (const CallbackClients::Message &message : news)
        storageClients.tell(message);
}

void ClientCallbacks::stop()
{
    looks.stop();
    stateClients.stop();
    storageClients.stop();
}

CallbackClients::Message ClientCallbacks::storageMessage(const QString &device, const QString &xml)
{
    const auto call = [id = device.toStdString(), text = xml.toStdString()](CORBA::Object_ptr client) {
        const TQ_KRV::IF_KorveStatusCallback_var own(TQ_KRV::IF_KorveStatusCallback::_unchecked_narrow(client));
        own->NotifyCStorageStatus(id.c_str(), text.c_str());
    };
    return {"the storage of " + device.toStdString(), call};
}

std::vector<CallbackClients::Message> ClientCallbacks::storageNow()
{
    const std::scoped_lock lock(mutex);
    std::vector<CallbackClients::Message> all;
    for (const auto &[device, xml] : storage)
        all.push_back(storageMessage(device, xml));
    return all;
}

} // namespace installation
