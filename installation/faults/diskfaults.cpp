#include "installation/faults/diskfaults.h"

#include <algorithm>
#include <set>

namespace installation::faults
{

std::vector<FaultSchedule::Event> diskEvents(const std::vector<DiskFault> &faults, const std::string &device,
                                             const std::function<void(bool)> &setDiskFull)
{
    std::vector<TimeWindow> windows;
    for (const DiskFault &fault : faults)
        if (fault.device == device)
            windows.push_back(fault.window);
    std::set<Elapsed> changes;
    for (const TimeWindow &window : windows) {
        changes.insert(window.begin);
        if (window.end)
            changes.insert(*window.end);
    }
    std::vector<FaultSchedule::Event> events;
    for (const Elapsed at : changes) {
        const bool isFull =
            std::any_of(windows.begin(), windows.end(), [at](const TimeWindow &window) { return window.holds(at); });
        events.push_back({at, [setDiskFull, isFull] { setDiskFull(isFull); }});
    }
    return events;
}

} // namespace installation::faults
