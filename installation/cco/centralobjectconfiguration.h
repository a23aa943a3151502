#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace installation
{

/// What a central object service knows from the beginning. An empty name is a name that is not available.
struct CentralObjectConfiguration {
    /// Where the service of another host listens.
    struct Peer {
        std::string host;
        std::uint16_t port = 8003;
    };

    struct Subsystem {
        std::string name;
        std::vector<std::string> workstations;
    };

    struct Timing {
        std::chrono::milliseconds probeInterval{500};
        std::chrono::milliseconds answerLimit{1000};   ///< silence of an object or a peer; that of an address is 1 s
        std::chrono::milliseconds callbackLimit{2000}; ///< time that a callback may take for one event
    };

    std::string systemName;
    std::string subsystemName;   ///< of this service; names are compared without case
    std::string workstationName; ///< of this service
    std::vector<Subsystem> subsystems;
    std::vector<std::string> systemWorkstations; ///< those that serve the whole system
    std::vector<Peer> peers;
    Timing timing{};
};

} // namespace installation
