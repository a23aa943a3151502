#pragma once

#include "apps/korvectl/listing.h"

#include <chrono>
#include <optional>

/// What is told while records are followed, as text for standard output: sentences and tables, or JSON objects, one a
/// line. "event" is "connected", "device", "record", "listed" (all were told) or "lost".
namespace korvectl
{

/// What has become of the connections to a manager.
struct ConnectionEvent {
    QString subsystem;
    quint64 atUs = 0;        ///< since 1970
    bool isConnected = true; ///< else it is lost
    std::optional<std::chrono::milliseconds> away{}; ///< how long it had been lost, if it had been connected before
};

struct Listing {
    QVector<DeviceState> devices;
    QVector<ListedRecord> records;
};

QString eventText(const ConnectionEvent &event);
QString eventJson(const ConnectionEvent &event);

QString listingText(const Listing &listing);
QString listingJson(const Listing &listing);

} // namespace korvectl
