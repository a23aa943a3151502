#pragma once

#include "idl/korve.hh"

#include <QString>

#include <vector>

namespace installation
{

/// What a device tells of itself.
struct DeviceStatus {
    QString firmwareVersion;
    quint64 totalBytes = 0;
    quint64 freeBytes = 0;
    int recordCount = 0;

    bool operator==(const DeviceStatus &) const = default;
};

/// A recorder as the manager knows it. One that is gone stays known, with its last address and status.
struct Device {
    QString id;      ///< printable ASCII without "/"
    QString address; ///< that the recorder publishes
    bool available = false;
    DeviceStatus status{};
    TQ_KORVE::IF_Control_var control{}; ///< nil when nothing is known but the address; its calls are limited
};

/// In ascending order of the ids.
using DeviceList = std::vector<Device>;

} // namespace installation
