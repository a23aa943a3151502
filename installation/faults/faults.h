#pragma once

#include "installation/faults/callfaults.h"
#include "installation/faults/faultschedule.h"

#include <functional>
#include <set>

namespace installation::faults
{

/// What the script needs to know of a process, and what it can do with it.
struct FaultySide {
    std::set<std::string> roles;           ///< that run in this process
    std::string device{};                  ///< the id of its recorder
    std::function<void(int)> setDiskError; ///< has that recorder's disk fail with an `errno`, 0: not; called on any thread
};

/// The faults of one script in one process, for as long as it lives. Needs an ORB. Faults of roles and devices that are
/// not here do nothing here.
class Faults
{
public:
    /// @p start is what the times of the script count from.
    Faults(const FaultScript &script, const FaultySide &side,
           std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now());

private:
    CallFaults calls;
    FaultSchedule schedule;
};

} // namespace installation::faults
