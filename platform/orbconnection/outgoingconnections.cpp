#include "orbconnection/outgoingconnections.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/omniInterceptors.h>

#include <chrono>
#include <mutex>
#include <string>

namespace CorbaCommon
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr char sourceName[] = "orbconnection/outgoingconnections";
constexpr int mostUnanswered = 50;
constexpr std::chrono::milliseconds longestPause{200}; // who waits between calls is no endless one

/// The connections that a thread has opened one after the other, and on which nothing was answered.
struct Unanswered {
    std::string peer;
    Clock::time_point last;
    int count = 0;
};
thread_local Unanswered unanswered;

CORBA::Boolean noteOpened(omni::omniInterceptors::clientOpenConnection_T::info_T &info)
{
    const Clock::time_point now = Clock::now();
    const std::string peer = info.peeraddress();
    const bool goesOn = unanswered.peer == peer && now - unanswered.last < longestPause;
    unanswered = {peer, now, goesOn ? unanswered.count + 1 : 1};
    if (unanswered.count <= mostUnanswered)
        return true;
    info.reject = true;
    info.why = "it ends each connection without an answer";
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("A call to %1 is given up: %2").arg(QString::fromStdString(peer), QLatin1String(info.why));
    });
    unanswered = {};
    return true;
}

CORBA::Boolean noteAnswered(omni::omniInterceptors::clientReceiveReply_T::info_T &)
{
    unanswered.count = 0;
    return true;
}
} // namespace

void watchOutgoingConnections()
{
    static std::once_flag once;
    std::call_once(once, [] {
        omniORB::getInterceptors()->clientOpenConnection.add(&noteOpened);
        omniORB::getInterceptors()->clientReceiveReply.add(&noteAnswered);
    });
}
} // namespace CorbaCommon
