#include "installation/faults/diskfaults.h"

#include <algorithm>
#include <set>

namespace installation::faults
{

std::vector<FaultSchedule::Event> diskEvents(const std::vector<DiskFault> &faults, const std::string &device,
                                             const std::function<void(int)> &setDiskError)
{
    std::vector<DiskFault> own;
    std::ranges::copy_if(faults, std::back_inserter(own), [&](const DiskFault &fault) { return fault.device == device; });
    std::set<Elapsed> changes;
    for (const DiskFault &fault : own) {
        changes.insert(fault.window.begin);
        if (fault.window.end)
            changes.insert(*fault.window.end);
    }
    std::vector<FaultSchedule::Event> events;
    for (const Elapsed at : changes) {
        const auto first = std::ranges::find_if(own, [at](const DiskFault &fault) { return fault.window.holds(at); });
        events.push_back({at, [setDiskError, error = first == own.end() ? 0 : first->error] { setDiskError(error); }});
    }
    return events;
}

} // namespace installation::faults
