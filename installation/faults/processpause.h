#pragma once

#include <chrono>

namespace installation::faults
{

/// Has this process stand still, as if its machine did, for that long. A process of its own starts it again, also when
/// everything here stands; it ends with this one. Returns when that is over.
/// @throws std::system_error when there is no process to be had; nothing stands still then.
void standStill(std::chrono::milliseconds duration);

} // namespace installation::faults
