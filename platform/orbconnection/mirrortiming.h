#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>

/// How a mirror waits, and how much it keeps.
struct MirrorTiming {
    std::chrono::milliseconds heartbeat{2000}; ///< the longest silence between two that have nothing to say
    int missedUntilLost = 3;                   ///< heartbeats
    /// Pauses before the first attempts to connect; the last one holds for all that follow.
    std::array<std::chrono::milliseconds, 3> backOff{std::chrono::milliseconds(250), std::chrono::milliseconds(500),
                                                     std::chrono::milliseconds(1000)};
    /// The longest time between two batches of a snapshot, until the client leaves the server.
    std::chrono::milliseconds snapshotPatience{30000};
    std::size_t batchBytes = 256 * 1024; ///< a batch is closed when it has grown to this; counts as much while it waits
    std::size_t maximumBatchBytes = 64 * 1024 * 1024; ///< a longer one is refused, a value that needs one left out
    std::size_t windowBytes = 1024 * 1024; ///< while more wait for a peer, changes are merged, and batches gathered
    std::size_t queueBytes = 16 * 1024 * 1024; ///< while more wait, those too that are told one by one otherwise

    std::chrono::milliseconds silenceUntilLost() const { return heartbeat * missedUntilLost; }
    /// Between looks whether somebody is lost.
    std::chrono::milliseconds watchInterval() const { return std::max(heartbeat / 4, std::chrono::milliseconds(1)); }
};
