#pragma once

#include "coresupport/coresupport_export.h"

/// What the operating system knows of other machines.
///
/// Thread: any.
class CORESUPPORT_EXPORT UlmaOS
{
public:
    struct ProbeReply {
        int reachable;   ///< non-zero: something accepts connections there
        int errorNumber; ///< else the `errno` that says why not; ETIMEDOUT when nothing answered
    };

    static UlmaOS &GetInstance();

    /// Asks by a TCP connection, which is closed at once, whether @p port of @p address (Latin-1) answers.
    ///
    /// @p payloadBytes is the size of the packet for probes that send one; this one sends none.
    /// Blocks for at most one second; a name instead of an address costs the time of its look-up on top.
    ProbeReply probe(const char *address, unsigned short port, int payloadBytes);
};
