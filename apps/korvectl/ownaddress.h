#pragma once

#include <QHostAddress>

namespace korvectl
{

/// Where sockets of this program listen: at the address of its ORB. @throws Failure when that has no IPv4 address.
QHostAddress listeningAddress();
/// Where others reach them, in digits. @throws Failure
QString reachableAddress();

} // namespace korvectl
