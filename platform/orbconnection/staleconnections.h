#pragma once

#include <omniORB4/CORBA.h>

namespace CorbaCommon
{
/// Makes a call that may be repeated. When a service has been started anew, the first call on each connection to the
/// one before it fails, and says nothing of the new one.
template <typename Call> auto pastStaleConnections(const Call &call, int mostStaleConnections = 4)
{
    for (int i = 0; i < mostStaleConnections; ++i) {
        try {
            return call();
        } catch (const CORBA::COMM_FAILURE &) {
        }
    }
    return call();
}
} // namespace CorbaCommon
