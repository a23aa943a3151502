#pragma once

#include "installation/faults/faultschedule.h"

namespace installation::faults
{

/// When the disk of @p device is to fail with which `errno`: with that of the first of @p faults that holds, 0 while none
/// does. Those of other devices do not count.
std::vector<FaultSchedule::Event> diskEvents(const std::vector<DiskFault> &faults, const std::string &device,
                                             const std::function<void(int)> &setDiskError);

} // namespace installation::faults
