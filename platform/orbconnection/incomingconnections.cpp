#include "orbconnection/incomingconnections.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/omniInterceptors.h>

#include <algorithm>
#include <mutex>
#include <string_view>

#include <netdb.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/incomingconnections";
constexpr rlim_t wantedDescriptors = 4096;

thread_local std::string caller;

/// The host in the ORB's "giop:tcp:HOST:PORT".
std::string_view hostIn(std::string_view text)
{
    constexpr std::string_view prefix = "giop:tcp:";
    if (text.starts_with(prefix))
        text.remove_prefix(prefix.size());
    text = text.substr(0, text.rfind(':'));
    if (text.starts_with('[') && text.ends_with(']'))
        text = text.substr(1, text.size() - 2);
    return text;
}

int descriptorLimit()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 1 << 20));
}

/// The lowest descriptor that is free: so many are taken at least. @p limit when there is none.
int lowestFreeDescriptor(int limit)
{
    const int descriptor = eventfd(0, EFD_CLOEXEC);
    if (descriptor < 0)
        return limit;
    close(descriptor);
    return descriptor;
}

bool isConnectionTo(int descriptor, std::string_view host)
{
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    char text[NI_MAXHOST];
    return getpeername(descriptor, reinterpret_cast<sockaddr *>(&peer), &size) == 0 &&
           getnameinfo(reinterpret_cast<sockaddr *>(&peer), size, text, sizeof text, nullptr, 0, NI_NUMERICHOST) == 0 &&
           host == text;
}

bool hasMoreThanItsShare(std::string_view host, int share, int limit)
{
    int connections = 0;
    for (int descriptor = 0; descriptor < limit && connections <= share; ++descriptor)
        connections += isConnectionTo(descriptor, host);
    return connections > share;
}

/// Why there is no room for one more connection from @p host; null when there is.
const char *reasonToRefuse(std::string_view host)
{
    const int limit = descriptorLimit();
    const int usable = limit - limit / 8;
    const int taken = lowestFreeDescriptor(limit);
    if (taken >= usable)
        return "the descriptors of this process are nearly used up";
    // Who wants one of very many has to be counted; usually there are few.
    if (taken > usable / 2 && hasMoreThanItsShare(host, usable / 2, limit))
        return "it has half of the descriptors that are there for connections";
    return nullptr;
}

CORBA::Boolean admit(omni::omniInterceptors::serverAcceptConnection_T::info_T &info)
{
    const std::string_view host = hostIn(info.peeraddress());
    info.why = reasonToRefuse(host);
    info.reject = info.why != nullptr;
    if (info.reject)
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A connection from %1 is refused: %2")
                .arg(QString::fromLatin1(host.data(), static_cast<int>(host.size())), QLatin1String(info.why));
        });
    return true;
}

CORBA::Boolean noteCaller(omni::omniInterceptors::serverReceiveRequest_T::info_T &info)
{
    caller = hostIn(info.peeraddress());
    return true;
}

void raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= wantedDescriptors)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, wantedDescriptors);
    setrlimit(RLIMIT_NOFILE, &limit);
}
} // namespace

void watchIncomingConnections()
{
    static std::once_flag once;
    std::call_once(once, [] {
        raiseDescriptorLimit();
        omniORB::getInterceptors()->serverAcceptConnection.add(&admit);
        omniORB::getInterceptors()->serverReceiveRequest.add(&noteCaller);
    });
}

std::string callerAddress()
{
    return caller;
}
} // namespace CorbaCommon
