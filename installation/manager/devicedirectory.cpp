#include "installation/manager/devicedirectory.h"

#include <algorithm>

namespace installation
{

void DeviceDirectory::replace(DeviceList newDevices)
{
    const std::scoped_lock lock(mutex);
    devices.swap(newDevices);
}

QStringList DeviceDirectory::ids() const
{
    const std::scoped_lock lock(mutex);
    QStringList ids;
    for (const Device &device : devices)
        ids << device.id;
    return ids;
}

std::optional<Device> DeviceDirectory::find(const QString &id) const
{
    return first([&](const Device &device) { return device.id == id; });
}

std::optional<Device> DeviceDirectory::findByAddress(const QString &address) const
{
    return first([&](const Device &device) { return device.address == address; });
}

std::optional<Device> DeviceDirectory::first(const std::function<bool(const Device &)> &matches) const
{
    const std::scoped_lock lock(mutex);
    const auto found = std::find_if(devices.begin(), devices.end(), matches);
    return found == devices.end() ? std::nullopt : std::optional(*found);
}

} // namespace installation
