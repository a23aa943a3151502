#include "orbconnection/calldeadline.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/minorCode.h>
#include <omniORB4/omniInterceptors.h>

// The ORB's own, in the order in which they need each other.
#include <omniORB4/IOP_C.h>
#include <omniORB4/internal/giopRope.h>
#include <omniORB4/internal/giopStrand.h>
#include <omniORB4/internal/giopStream.h>
#include <omniORB4/internal/GIOP_C.h>

#include <mutex>

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/calldeadline";

bool isLate(omni::GIOP_C &call)
{
    const omni_time_t &deadline = call.calldescriptor()->getDeadline();
    if (!deadline)
        return false;
    omni_time_t now;
    omni_thread::get_time(now);
    return deadline < now;
}

/// A call can open many connections; they share its deadline.
CORBA::Boolean refuseLateConnection(omni::omniInterceptors::clientOpenConnection_T::info_T &info)
{
    if (isLate(info.giop_c)) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A call to %1 has reached its limit").arg(QString::fromUtf8(info.peeraddress()));
        });
        throw CORBA::TRANSIENT(omni::TRANSIENT_CallTimedout, CORBA::COMPLETED_NO);
    }
    return true;
}
} // namespace

void keepCallsWithinTheirLimit()
{
    static std::once_flag once;
    std::call_once(once, [] { omniORB::getInterceptors()->clientOpenConnection.add(&refuseLateConnection); });
}
} // namespace CorbaCommon
