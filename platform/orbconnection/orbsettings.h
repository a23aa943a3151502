#pragma once

#include "orbconnection/orbconnection_export.h"

#include <QString>

#include <algorithm>
#include <chrono>
#include <vector>

namespace CorbaCommon
{
/// Where a program listens, what it publishes, and how long it waits. See OrbHandler::configure().
struct ORBCONNECTION_EXPORT OrbSettings {
    static constexpr int centralServicePort = 8003;

    QString address;                   ///< to bind to; also a name
    QString publishedAddress;          ///< what references of this process name; empty: `address`
    std::vector<unsigned short> ports; ///< to listen on; none: one that the system chooses
    QString centralService;            ///< "HOST:PORT", or "HOST" for port 8003
    std::chrono::milliseconds callTimeout{10000};
    std::chrono::milliseconds connectTimeout{2000};

    /// As the environment says: KORVE_ADDRESS, else 127.0.0.1; KORVE_CCO, else 127.0.0.1:8003.
    static OrbSettings fromEnvironment();

    /// What connecting may take: no more than the whole call.
    std::chrono::milliseconds connectLimit() const
    {
        const bool isCallLimited = callTimeout.count() != 0; // the ORB takes 0 for no limit
        return isCallLimited ? std::min(connectTimeout, callTimeout) : connectTimeout;
    }
    const QString &published() const { return publishedAddress.isEmpty() ? address : publishedAddress; }
};

/// The reference of the central object service at "HOST:PORT" or "HOST"; empty when that is no address.
ORBCONNECTION_EXPORT QString centralServiceReference(const QString &hostAndPort);
} // namespace CorbaCommon
