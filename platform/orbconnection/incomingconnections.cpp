#include "orbconnection/incomingconnections.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/omniInterceptors.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/socket.h>

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

std::size_t descriptorLimit()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur;
}

/// Those that this process has; nothing when none is left to look with. Connections come faster than they are looked at
/// and closed, so that there are holes among them.
std::optional<std::vector<int>> openDescriptors()
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(opendir("/proc/self/fd"), closedir);
    if (!folder)
        return std::nullopt;
    std::vector<int> descriptors;
    while (const dirent *entry = readdir(folder.get())) {
        const int descriptor = std::atoi(entry->d_name);
        if (entry->d_name[0] != '.' && descriptor != dirfd(folder.get()))
            descriptors.push_back(descriptor);
    }
    return descriptors;
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

bool hasMoreThanItsShare(std::string_view host, std::size_t share, const std::vector<int> &descriptors)
{
    const auto connections = std::count_if(descriptors.begin(), descriptors.end(),
                                           [host](int descriptor) { return isConnectionTo(descriptor, host); });
    return static_cast<std::size_t>(connections) > share;
}

/// Why there is no room for one more connection from @p host; null when there is.
const char *reasonToRefuse(std::string_view host)
{
    const std::size_t limit = descriptorLimit();
    const std::size_t usable = limit - limit / 8;
    const auto taken = openDescriptors();
    if (!taken || taken->size() > usable)
        return "the descriptors of this process are nearly used up";
    // Who wants one of very many has to be counted; usually there are few.
    if (taken->size() > usable / 2 && hasMoreThanItsShare(host, usable / 2, *taken))
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
