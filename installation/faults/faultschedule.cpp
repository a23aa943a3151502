#include "installation/faults/faultschedule.h"

#include <algorithm>

namespace installation::faults
{

FaultSchedule::FaultSchedule(std::vector<Event> given, std::chrono::steady_clock::time_point start)
    : events(std::move(given)), start(start)
{
    std::stable_sort(events.begin(), events.end(), [](const Event &a, const Event &b) { return a.at < b.at; });
    std::span<const Event> later = events;
    for (; !later.empty() && later.front().at == Elapsed(0); later = later.subspan(1))
        later.front().act();
    if (!later.empty())
        thread = std::jthread([this, later](const std::stop_token &end) { run(end, later); });
}

void FaultSchedule::run(const std::stop_token &end, std::span<const Event> later)
{
    for (const Event &event : later) {
        std::unique_lock lock(mutex);
        never.wait_until(lock, end, start + event.at, [] { return false; });
        if (end.stop_requested())
            return;
        event.act();
    }
}

} // namespace installation::faults
