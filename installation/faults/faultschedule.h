#pragma once

#include "installation/faults/faultscript.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <span>
#include <thread>

namespace installation::faults
{

/// Does things at their times: what is due at once in the constructor, the rest on a thread of its own. What is not due
/// when it goes is not done.
class FaultSchedule
{
public:
    struct Event {
        Elapsed at;
        std::function<void()> act;
    };

    /// @p start is when no time had elapsed. Without events there is no thread.
    FaultSchedule(std::vector<Event> events, std::chrono::steady_clock::time_point start);

private:
    void run(const std::stop_token &end, std::span<const Event> later);

    std::vector<Event> events; ///< in their order
    const std::chrono::steady_clock::time_point start;

    std::mutex mutex;
    std::condition_variable_any never; // comes true; it ends when it is asked to
    std::jthread thread; // last: it uses the others
};

} // namespace installation::faults
