#pragma once

#include <QString>

/// The address of a value-tree server.
struct VtConnectData {
    static constexpr int defaultPort = 8004;

    QString hostName;
    QString ipAddress;
    int port = defaultPort;

    bool isFilled() const { return port != 0 && (!hostName.isEmpty() || !ipAddress.isEmpty()); }
};
