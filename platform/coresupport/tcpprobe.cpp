#include "coresupport/tcpprobe.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;

class Socket
{
public:
    explicit Socket(const addrinfo &address)
        : descriptor(socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol))
    {
    }
    Socket(const Socket &) = delete;
    ~Socket()
    {
        if (descriptor >= 0)
            close(descriptor);
    }
    const int descriptor;
};

int untilWritable(int descriptor, Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd wait{descriptor, POLLOUT, 0};
        const int ready = poll(&wait, 1, static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0)));
        if (ready > 0)
            return 0;
        if (ready == 0)
            return ETIMEDOUT;
        if (errno != EINTR)
            return errno;
    }
}

/// A connection to a local port without a listener may, by chance, leave from that very port and meet itself.
bool isConnectedToItself(int descriptor)
{
    sockaddr_storage ends[2]{};
    socklen_t sizes[2]{sizeof ends[0], sizeof ends[1]};
    return getsockname(descriptor, reinterpret_cast<sockaddr *>(&ends[0]), &sizes[0]) == 0 &&
           getpeername(descriptor, reinterpret_cast<sockaddr *>(&ends[1]), &sizes[1]) == 0 && sizes[0] == sizes[1] &&
           std::memcmp(&ends[0], &ends[1], sizes[0]) == 0;
}

int connectError(const addrinfo &address, Clock::time_point deadline)
{
    const Socket socket(address);
    if (socket.descriptor < 0)
        return errno;
    if (connect(socket.descriptor, address.ai_addr, address.ai_addrlen) != 0) {
        if (errno != EINPROGRESS)
            return errno;
        if (const int error = untilWritable(socket.descriptor, deadline))
            return error;
        int error = 0;
        socklen_t size = sizeof error;
        if (getsockopt(socket.descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
            return errno;
        if (error != 0)
            return error;
    }
    return isConnectedToItself(socket.descriptor) ? ECONNREFUSED : 0;
}
} // namespace

int tcpProbeError(const char *host, unsigned short port, std::chrono::milliseconds limit)
{
    if (!host || !*host || port == 0)
        return EINVAL;
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(host, std::to_string(port).c_str(), &hints, &found) != 0)
        return EHOSTUNREACH;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, freeaddrinfo);

    const auto deadline = Clock::now() + limit;
    int error = EHOSTUNREACH;
    for (const addrinfo *address = found; address && error != 0; address = address->ai_next)
        error = connectError(*address, deadline);
    return error;
}
