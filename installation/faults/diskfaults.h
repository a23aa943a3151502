#pragma once

#include "installation/faults/faultschedule.h"

namespace installation::faults
{

/// When the disk of @p device is to become full and to have room again: full for as long as any of @p faults holds.
/// Those of other devices do not count.
std::vector<FaultSchedule::Event> diskEvents(const std::vector<DiskFault> &faults, const std::string &device,
                                             const std::function<void(bool)> &setDiskFull);

} // namespace installation::faults
