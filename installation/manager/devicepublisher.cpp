#include "installation/manager/devicepublisher.h"

#include "korvebase/valuenames.h"

#include "appruntime/threadswitchingadministration.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueptr.h"

#include <algorithm>

namespace installation
{

namespace
{

constexpr double bytesPerGb = 1e9;

QString pathOf(const QString &id)
{
    return QLatin1String("/KORVE/Device/") + id;
}

/// Calls @p act with the publisher, if it is still there, on the main thread.
template <typename... Arguments, typename Act>
std::function<void(Arguments...)> onMainThread(const std::weak_ptr<DevicePublisher *> &weak, Act act)
{
    const auto mainThread = ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(
        QStringLiteral("installation/manager/devicepublisher"));
    return [mainThread, weak, act](Arguments... arguments) {
        mainThread->post(ThreadingHelper::RunInMainThreadEvent([=] {
            if (const auto publisher = weak.lock())
                act(**publisher, arguments...);
        }));
    };
}

} // namespace

struct DevicePublisher::Values {
    explicit Values(const QString &path)
    {
        isVirtual.getOrCreate(path + QLatin1String("/Admin/IsVirtual"));
        gbTotal.getOrCreate(path + QLatin1String("/Status/DiscSpace/GBTotal"));
        gbAvailable.getOrCreate(path + QLatin1String("/Status/DiscSpace/GBAvailable"));
        firmwareVersion.getOrCreate(path + QLatin1String("/Status/Version/FirmwareVersion"));
        loadCount.getOrCreate(path + QLatin1String("/Records/LoadCount"));
        oneRecordHasChanged.getOrCreate(path + u'/' + korve::name::OneRecordHasChanged);
        available.getOrCreate(path + QLatin1String("/KorveAvailable"));
    }

    /// A value that somebody has removed stays away.
    template <typename Held, typename Content> static void set(values::ValuePtr<Held> &value, const Content &content)
    {
        if (value)
            value->SetValue(content, nullptr);
    }

    void set(const Device &device)
    {
        set(isVirtual, false);
        set(gbTotal, static_cast<double>(device.status.totalBytes) / bytesPerGb);
        set(gbAvailable, static_cast<double>(device.status.freeBytes) / bytesPerGb);
        set(firmwareVersion, device.status.firmwareVersion);
        set(loadCount, device.status.recordCount);
        set(available, device.available);
    }

    values::ValuePtr<values::Value<bool>> available;
    values::ValuePtr<values::Value<bool>> isVirtual;
    values::ValuePtr<values::ValueNumeric<double>> gbTotal;
    values::ValuePtr<values::ValueNumeric<double>> gbAvailable;
    values::ValuePtr<values::Value<QString>> firmwareVersion;
    values::ValuePtr<values::ValueNumeric<int>> loadCount;
    values::ValuePtr<values::Value<QString>> oneRecordHasChanged;
};

DevicePublisher::DevicePublisher() : alive(std::make_shared<DevicePublisher *>(this)) {}

DevicePublisher::~DevicePublisher()
{
    removeOthers({});
}

void DevicePublisher::publish(const DeviceList &devices)
{
    removeOthers(devices);
    for (const Device &device : devices) {
        std::unique_ptr<Values> &values = shown[device.id];
        if (!values)
            values = std::make_unique<Values>(pathOf(device.id));
        values->set(device);
    }
}

void DevicePublisher::tellRecord(const QString &device, const QString &record)
{
    const auto known = shown.find(device);
    if (known == shown.end() || !known->second->oneRecordHasChanged)
        return;
    values::Value<QString> &value = *known->second->oneRecordHasChanged;
    if (value.GetValue() == record)
        value.HasChanged(ChangeCodeValue, nullptr); // or nobody would see that it was asked for again
    else
        value.SetValue(record, nullptr);
}

std::function<void(const DeviceList &)> DevicePublisher::listener()
{
    return onMainThread<const DeviceList &>(
        alive, [](DevicePublisher &publisher, const DeviceList &devices) { publisher.publish(devices); });
}

std::function<void(const QString &, const QString &)> DevicePublisher::recordListener()
{
    return onMainThread<const QString &, const QString &>(
        alive, [](DevicePublisher &publisher, const QString &device, const QString &record) {
            publisher.tellRecord(device, record);
        });
}

void DevicePublisher::removeOthers(const DeviceList &devices)
{
    std::erase_if(shown, [&](const auto &entry) {
        const bool isThere =
            std::any_of(devices.begin(), devices.end(), [&](const Device &device) { return device.id == entry.first; });
        if (!isThere)
            values::Tree::Instance().removeNode(pathOf(entry.first));
        return !isThere;
    });
}

} // namespace installation
