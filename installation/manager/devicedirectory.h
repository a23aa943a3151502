#pragma once

#include "installation/manager/device.h"

#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>

namespace installation
{

/// The devices as they were found last: written by the thread that looks for them, read by all that serve calls.
///
/// Thread: any; never blocks for longer than a copy takes.
class DeviceDirectory
{
public:
    explicit DeviceDirectory(DeviceList devices) : devices(std::move(devices)) {}

    void replace(DeviceList newDevices);

    QStringList ids() const;
    std::optional<Device> find(const QString &id) const;
    /// The first one, where several devices share an address.
    std::optional<Device> findByAddress(const QString &address) const;

private:
    std::optional<Device> first(const std::function<bool(const Device &)> &matches) const;

    mutable std::mutex mutex; // servants must answer at once, and there is no thread to post to
    DeviceList devices;
};

} // namespace installation
