#pragma once

#include <QString>

#include <optional>

namespace installation
{

/// The network endpoint of a channel: an IPv4 address in the order of the host, and a port.
struct ReceiverAddress {
    quint32 address = 0;
    quint16 port = 0;

    bool operator==(const ReceiverAddress &) const = default;

    /// Of a text "HOST:PORT" with the address in digits; without result for anything else.
    static std::optional<ReceiverAddress> from(const QString &text);
};

} // namespace installation
