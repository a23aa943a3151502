#pragma once

#include <omniORB4/CORBA.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace installation
{

struct NetworkAddress {
    std::string host;
    std::uint16_t port;
};

/// A list of values that is an address: a host and a port from 1 to 65535.
std::optional<NetworkAddress> addressIn(const std::vector<std::string> &values);

/// Whether something accepts connections there within a second. Blocks for that long, and longer only if a host name
/// has to be looked up.
bool addressAnswers(const NetworkAddress &address);

/// Whether the object is still there: its process is reachable and knows it. Blocks for @p limit.
bool objectAnswers(CORBA::Object_ptr object, std::chrono::milliseconds limit);

} // namespace installation
