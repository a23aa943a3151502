#pragma once

#include <QHostAddress>

namespace korvectl
{

/// Where sockets of this program are, so that devices find them.
struct OwnAddress {
    QHostAddress listening;
    QString reachable; ///< in digits

    /// As the references of this program. @throws Failure when these are not at an IPv4 address.
    static OwnAddress ofReferences();
};

} // namespace korvectl
