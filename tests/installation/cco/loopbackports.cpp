#include "tests/installation/cco/loopbackports.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace
{

constexpr in_addr_t stranger = 0x7f090909;

sockaddr_in loopback(std::uint16_t port, in_addr_t host = INADDR_LOOPBACK)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(host);
    return address;
}

int boundSocket()
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(0);
    if (descriptor < 0 || ::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error("no port of 127.0.0.1 can be bound");
    return descriptor;
}

int listeningSocket(int queue)
{
    const int descriptor = boundSocket();
    if (::listen(descriptor, queue) != 0)
        throw std::runtime_error("a port of 127.0.0.1 cannot be listened on");
    return descriptor;
}

std::uint16_t portOf(int descriptor)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        throw std::runtime_error("a socket has no address");
    return ntohs(address.sin_port);
}

int strangersSocket(int flags = 0)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    const sockaddr_in from = loopback(0, stranger);
    ::bind(descriptor, reinterpret_cast<const sockaddr *>(&from), sizeof from);
    return descriptor;
}

/// Waits for one of both; false when @p end is readable, too.
bool waitForEither(int one, int other, int end, bool &isOne)
{
    pollfd waited[] = {{one, POLLIN, 0}, {other, POLLIN, 0}, {end, POLLIN, 0}};
    ::poll(waited, 3, -1);
    isOne = waited[0].revents != 0;
    return waited[2].revents == 0;
}

/// False at the end of what comes from there.
bool carryOnce(int from, int to)
{
    char bytes[4096];
    const ssize_t count = ::recv(from, bytes, sizeof bytes, 0);
    return count > 0 && ::send(to, bytes, static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
}

} // namespace

MutePort::MutePort() : listener(listeningSocket(SOMAXCONN)) {}

MutePort::~MutePort()
{
    ::close(listener);
}

std::uint16_t MutePort::port() const
{
    return portOf(listener);
}

DeafPort::DeafPort() : listener(listeningSocket(0))
{
    const sockaddr_in address = loopback(port());
    for (int i = 0; i < 4; ++i) { // more than the queue holds; the last ones stay half-open
        waiting.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        ::connect(waiting.back(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    }
}

DeafPort::~DeafPort()
{
    for (const int descriptor : waiting)
        ::close(descriptor);
    ::close(listener);
}

std::uint16_t DeafPort::port() const
{
    return portOf(listener);
}

StrangersConnections::StrangersConnections(std::uint16_t port, int count)
{
    const sockaddr_in to = loopback(port);
    for (int i = 0; i < count; ++i) {
        descriptors.push_back(strangersSocket(SOCK_NONBLOCK));
        ::connect(descriptors.back(), reinterpret_cast<const sockaddr *>(&to), sizeof to);
    }
}

StrangersConnections::~StrangersConnections()
{
    for (const int descriptor : descriptors)
        ::close(descriptor);
}

void StrangersConnections::send(const std::string &bytes)
{
    for (const int descriptor : descriptors)
        ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

StrangersWay::StrangersWay(std::uint16_t port)
    : listener(listeningSocket(1)), onward(strangersSocket()), end(::eventfd(0, EFD_CLOEXEC))
{
    const sockaddr_in to = loopback(port);
    if (::connect(onward, reinterpret_cast<const sockaddr *>(&to), sizeof to) != 0)
        throw std::runtime_error("there is no way from 127.9.9.9");
    thread = std::thread(&StrangersWay::carry, this);
}

StrangersWay::~StrangersWay()
{
    ::eventfd_write(end, 1);
    thread.join();
    for (const int descriptor : {listener, onward, end})
        ::close(descriptor);
}

std::uint16_t StrangersWay::port() const
{
    return portOf(listener);
}

void StrangersWay::carry() const
{
    bool isFirst = false;
    if (!waitForEither(listener, end, end, isFirst))
        return;
    const int here = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    while (waitForEither(here, onward, end, isFirst) && carryOnce(isFirst ? here : onward, isFirst ? onward : here)) {
    }
    ::close(here);
}

RefusingPort::RefusingPort() : holder(boundSocket()) {}

RefusingPort::~RefusingPort()
{
    ::close(holder);
}

std::uint16_t RefusingPort::port() const
{
    return portOf(holder);
}
