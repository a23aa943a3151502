#pragma once

namespace CorbaCommon
{
/// Lets the ORB fail a call whose peer ends one connection after the other before it has answered. The ORB takes that for
/// the end of an old connection, and would connect anew without end, beyond the limit of the call.
///
/// Call it after ORB_init; a second call does nothing.
void watchOutgoingConnections();
} // namespace CorbaCommon
