#pragma once

class QString;

/// Looks up @p hostName, a literal address too, and stores its first address; @p preferIPv4 puts those of IPv4 before
/// all others. False, with @p address untouched, when there is none. Blocks for as long as the system's resolver does.
bool firstAddressOfHost(const QString &hostName, QString &address, bool preferIPv4);
