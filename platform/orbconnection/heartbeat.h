#pragma once

#include <atomic>
#include <chrono>
#include <functional>

namespace mirror
{
/// Notices when a peer has been silent for too long. Thread: any.
class Heartbeat
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit Heartbeat(std::chrono::milliseconds patience, Clock clock = &std::chrono::steady_clock::now);

    /// The peer has been heard.
    void beat();
    bool isLost() const;

private:
    const std::chrono::steady_clock::duration patience;
    const Clock clock;
    std::atomic<std::chrono::steady_clock::rep> last;
};
} // namespace mirror
