#pragma once

namespace CorbaCommon
{
/// Lets a call fail with its limit also while its peer keeps it busy: one that ends each connection before it has
/// answered, or sends the call on and on. The ORB itself looks at the limit only where it waits. Such a call without a
/// limit has no end.
///
/// Call it after ORB_init; a second call does nothing.
void keepCallsWithinTheirLimit();
} // namespace CorbaCommon
