#pragma once

#include <omniORB4/CORBA.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace installation
{

/// What a look at something outside has found.
enum class Answer {
    Lives,
    Silent,  ///< no answer in time: it may be busy, standing still or cut off
    Gone,    ///< its port refuses, or its process does not know it
    NotAsked ///< this process had no means to ask
};

/// Looks in a row that found something silent. Three of them are its end, as one look is that finds it gone.
class Silence
{
public:
    static constexpr int mostMisses = 3;

    /// Takes note of the next look; true when it is the end.
    bool endsWith(Answer answer);

private:
    int misses = 0;
};

struct NetworkAddress {
    std::string host;
    std::uint16_t port;
};

/// A list of values that is an address: a host and a port from 1 to 65535.
std::optional<NetworkAddress> addressIn(const std::vector<std::string> &values);

/// Whether something accepts connections there. Blocks for a second at most, and longer only if a host name has to be
/// looked up.
Answer askAddress(const NetworkAddress &address);

/// Whether the object is there: its process is reachable and knows it. Blocks for @p limit, and for one more second when
/// there is no connection to be had.
Answer askObject(CORBA::Object_ptr object, std::chrono::milliseconds limit);

} // namespace installation
