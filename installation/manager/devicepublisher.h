#pragma once

#include "installation/manager/device.h"

#include <functional>
#include <map>
#include <memory>

namespace installation
{

/// Shows the devices in the value tree of the process, one node "/KORVE/Device/ID" each.
///
/// Below it: "KorveAvailable", "Admin/IsVirtual" (always false), "Status/DiscSpace/GBTotal" and "GBAvailable" in units
/// of 1000000000 bytes, "Status/Version/FirmwareVersion", "Records/LoadCount" and "OneRecordHasChanged", a record's id.
/// What is known of a device is set before it becomes available; what was known stays when it is not. Thread: main, but
/// for what listener() gives.
class DevicePublisher
{
public:
    DevicePublisher();
    /// Takes the nodes away.
    ~DevicePublisher();
    DevicePublisher(const DevicePublisher &) = delete;

    /// Shows exactly these devices.
    void publish(const DeviceList &devices);

    /// Has a list published on the main thread. Thread: any; may outlive the publisher.
    std::function<void(const DeviceList &)> listener();

    /// Tells whoever looks at the device that this record is to be looked at, also when it was the last one told.
    void tellRecord(const QString &device, const QString &record);
    /// The same on the main thread. Thread: any; may outlive the publisher.
    std::function<void(const QString &device, const QString &record)> recordListener();

private:
    struct Values;

    void removeOthers(const DeviceList &devices);

    std::map<QString, std::unique_ptr<Values>> shown;
    const std::shared_ptr<DevicePublisher *> alive; ///< holds this, until this has gone
};

} // namespace installation
