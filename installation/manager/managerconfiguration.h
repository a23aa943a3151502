#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

namespace installation
{

/// What a manager knows from the beginning.
struct ManagerConfiguration {
    /// Where the archive of the installation listens.
    struct Archive {
        QString host;
        std::uint16_t port = 0;
    };

    struct Timing {
        std::chrono::milliseconds lookInterval{1000}; ///< between two looks at the devices
        std::chrono::milliseconds statusLimit{2000};  ///< silence of a device after which it counts as unreachable
        std::chrono::milliseconds clientLimit{2000};  ///< of a call to a client's callback
        std::chrono::milliseconds callLimit{8000};    ///< of a call to a device for a client, whose own limit is 10 s
        std::chrono::milliseconds runInterval{200};   ///< between two looks at a replay or a recording
        std::chrono::milliseconds exportSilenceLimit{30000}; ///< of a recorder, after which an export ends
        std::chrono::milliseconds exportEndLimit{10000};     ///< until a transfer that is over must have been told
    };

    QString workstationName;
    QString stateFolder; ///< made when it is missing
    std::optional<Archive> archive{};
    Timing timing{};
};

} // namespace installation
