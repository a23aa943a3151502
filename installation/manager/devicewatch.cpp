#include "installation/manager/devicewatch.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"
#include "orbconnection/publishedendpoint.h"

#include <future>
#include <utility>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/devicewatch";
/// Counting the records takes the whole list, so not every look does it.
constexpr unsigned looksPerCount = 5;
/// Each has a thread. Whoever fills the central object service with names is not to get thousands.
constexpr std::size_t mostAskedAtOnce = 32;

std::string textOf(CORBA::Object_ptr object)
{
    const CORBA::ORB_var orb = theOrb();
    return CORBA::String_var(orb->object_to_string(object)).in();
}

DeviceStatus statusOf(TQ_KORVE::IF_Control_ptr recorder)
{
    DeviceStatus status;
    status.firmwareVersion = QString::fromUtf8(CORBA::String_var(recorder->getFirmwareVersion()).in());
    const TQ_KORVE::struMASS_STORE_STATUS_var store = recorder->getMassStoreStatus();
    status.totalBytes = store->totalSize;
    status.freeBytes = store->freeSize;
    return status;
}

void traceAvailability(const Device &device, const QString &reason)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return device.available
                   ? QStringLiteral("device %1 at %2 is available").arg(device.id, device.address)
                   : QStringLiteral("device %1 at %2 does not answer: %3").arg(device.id, device.address, reason);
    });
}

} // namespace

DeviceWatch::DeviceWatch(const ManagerConfiguration &configuration, CCO::IF_CCO_c_ptr service,
                         std::shared_ptr<DeviceDirectory> directory, RecordWatch records, Listener listener)
    : timing(configuration.timing), known(configuration.stateFolder), finder(service, timing.statusLimit),
      directory(std::move(directory)), listener(std::move(listener)), records(std::move(records)),
      devices(watchedFrom(configuration.stateFolder)), repetition(timing.lookInterval, [this] { look(); })
{
}

DeviceList DeviceWatch::knownFrom(const QString &stateFolder)
{
    const KnownDevices::AddressById known = KnownDevices(stateFolder).load();
    DeviceList devices;
    for (auto device = known.cbegin(); device != known.cend(); ++device)
        devices.push_back({.id = device.key(), .address = device.value()});
    return devices;
}

std::map<QString, DeviceWatch::Watched> DeviceWatch::watchedFrom(const QString &stateFolder)
{
    std::map<QString, Watched> devices;
    for (Device &device : knownFrom(stateFolder))
        devices[device.id].device = device;
    return devices;
}

void DeviceWatch::look()
{
    if (looks == 0 && !devices.empty() && listener)
        listener(list()); // known ones are shown, as unavailable, before anybody has answered
    bool addressesChanged = false;
    if (const auto found = finder.find())
        for (const auto &[id, recorder] : *found)
            addressesChanged |= take(id, recorder);
    if (addressesChanged)
        save();
    const bool countRecords = looks++ % looksPerCount == 0;
    const bool changed = askAll(countRecords) || addressesChanged;
    directory->replace(list());
    if (changed && listener)
        listener(list());
}

/// True when there is something new to be kept.
bool DeviceWatch::take(const QString &id, CORBA::Object_ptr recorder)
{
    Watched &watched = devices[id];
    const std::string reference = textOf(recorder);
    if (reference == watched.reference)
        return false;
    watched.reference = reference;
    watched.isNew = true;
    watched.device.control = withCallLimit<TQ_KORVE::IF_Control>(recorder, timing.callLimit);
    watched.forStatus = withCallLimit<TQ_KORVE::IF_Control>(recorder, timing.statusLimit);
    const QString address = CorbaCommon::publishedEndpoint(recorder).host;
    const bool isNews = watched.device.id != id || watched.device.address != address;
    watched.device.id = id;
    watched.device.address = address;
    return isNews;
}

/// Many at once, so that some silent ones hold up a look for no longer than one does. True when there is news.
bool DeviceWatch::askAll(bool countRecords)
{
    bool isAnyNew = false;
    std::vector<std::future<bool>> answers;
    const auto collect = [&] {
        for (std::future<bool> &answer : answers)
            isAnyNew |= answer.get();
        answers.clear();
    };
    for (auto &[id, watched] : devices) {
        if (answers.size() == mostAskedAtOnce)
            collect();
        if (repetition.isStopping())
            break;
        // Deferred when there is no thread to be had: then it is asked by collect().
        answers.push_back(std::async(std::launch::async | std::launch::deferred,
                                     [this, &watched, countRecords] { return ask(watched, countRecords); }));
    }
    collect();
    return isAnyNew;
}

/// True when the device says something else than before.
bool DeviceWatch::ask(Watched &watched, bool countRecords)
{
    if (CORBA::is_nil(watched.forStatus))
        return false;
    Device &device = watched.device;
    const bool wasAvailable = device.available;
    const DeviceStatus before = device.status;
    QString reason;
    try {
        device.available = true;
        device.status = statusOf(watched.forStatus);
        const bool isToBeCounted = std::exchange(watched.isNew, false) || countRecords || !wasAvailable;
        device.status.recordCount = isToBeCounted ? countOf(device, before.recordCount) : before.recordCount;
    } catch (const TQ_KORVE::exKorve &refusal) { // it is there, with something wrong
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("device %1: %2").arg(device.id, QString::fromUtf8(refusal.text)); });
    } catch (const CORBA::Exception &error) {
        device.available = false;
        reason = QLatin1String(error._name());
    }
    if (device.available != wasAvailable)
        traceAvailability(device, reason);
    return device.available != wasAvailable || device.status != before;
}

/// A long list takes longer than a sign of life may, so it says nothing of how the recorder is.
int DeviceWatch::countOf(const Device &device, int lastCount)
{
    try {
        return records.follow(device.id, device.control);
    } catch (const CORBA::Exception &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("records cannot be counted: %1").arg(QLatin1String(error._name())); });
        return lastCount;
    }
}

void DeviceWatch::save() const
{
    KnownDevices::AddressById addresses;
    for (const auto &[id, watched] : devices)
        addresses.insert(id, watched.device.address);
    try {
        known.save(addresses);
    } catch (const std::runtime_error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("the devices cannot be kept: %1").arg(QString::fromUtf8(error.what())); });
    }
}

DeviceList DeviceWatch::list() const
{
    DeviceList all;
    for (const auto &[id, watched] : devices)
        all.push_back(watched.device);
    return all;
}

} // namespace installation
