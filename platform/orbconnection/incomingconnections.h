#pragma once

#include "orbconnection/orbconnection_export.h"

#include <string>

namespace CorbaCommon
{
/// Lets the ORB note who calls, and refuse connections before they take the last descriptors of the process: an eighth
/// of them stays free, and one address gets at most half of the others. Raises the limit of descriptors as far as it may,
/// up to 4096.
///
/// Call it after ORB_init and before a POA is active; a second call does nothing.
ORBCONNECTION_EXPORT void watchIncomingConnections();

/// The host that the call being served on this thread comes from; empty for one from within the process.
ORBCONNECTION_EXPORT std::string callerAddress();
} // namespace CorbaCommon
