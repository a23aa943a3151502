#include "tests/installation/recorder/samplepeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace
{

constexpr time_t patienceSeconds = 60;

void require(bool fine, const char *action)
{
    if (!fine)
        throw std::runtime_error(std::string(action) + ": " + std::strerror(errno));
}

sockaddr_in nameOf(std::uint32_t host, std::uint16_t port)
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(host);
    name.sin_port = htons(port);
    return name;
}

int newSocket(SamplePeer::Transport transport)
{
    const int type = transport == SamplePeer::Transport::Tcp ? SOCK_STREAM : SOCK_DGRAM;
    const int descriptor = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    require(descriptor >= 0, "socket");
    return descriptor;
}

} // namespace

SamplePeer::SamplePeer(Transport transport, const QString &address)
    : isTcp(transport == Transport::Tcp), descriptor(newSocket(transport)),
      ownHost(ntohl(::inet_addr(address.toLatin1().constData())))
{
    sockaddr_in name = nameOf(ownHost, 0);
    socklen_t size = sizeof name;
    require(::bind(descriptor, reinterpret_cast<sockaddr *>(&name), size) == 0, "bind");
    require(!isTcp || ::listen(descriptor, 1) == 0, "listen");
    require(::getsockname(descriptor, reinterpret_cast<sockaddr *>(&name), &size) == 0, "getsockname");
    ownPort = ntohs(name.sin_port);
    setPatience();
}

SamplePeer::SamplePeer(Transport transport, std::uint32_t host, std::uint16_t port)
    : isTcp(transport == Transport::Tcp), descriptor(newSocket(transport))
{
    const sockaddr_in name = nameOf(host, port);
    require(::connect(descriptor, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0, "connect");
    setPatience();
}

SamplePeer::SamplePeer(SamplePeer &&other) noexcept
    : isTcp(other.isTcp), descriptor(std::exchange(other.descriptor, -1)), ownHost(other.ownHost), ownPort(other.ownPort)
{
}

SamplePeer::~SamplePeer()
{
    close();
}

void SamplePeer::setPatience()
{
    const timeval patience{patienceSeconds, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

SamplePeer &SamplePeer::accept()
{
    const int accepted = ::accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC);
    require(accepted >= 0, "accept");
    ::close(std::exchange(descriptor, accepted));
    setPatience();
    return *this;
}

void SamplePeer::send(const QByteArray &bytes)
{
    for (int sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(descriptor, bytes.constData() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        require(count > 0, "send");
        sent += static_cast<int>(count);
    }
}

QByteArray SamplePeer::read(int count)
{
    if (count == 0) // for which a socket waits all the same
        return {};
    QByteArray bytes(count, Qt::Uninitialized);
    const ssize_t got = ::recv(descriptor, bytes.data(), count, isTcp ? MSG_WAITALL : 0);
    require(got >= 0, "recv");
    bytes.truncate(static_cast<int>(got));
    return bytes;
}

QByteArray SamplePeer::readToEnd()
{
    constexpr int step = 1 << 16;
    QByteArray all;
    for (QByteArray part = read(step); !part.isEmpty(); part = read(step))
        all += part;
    return all;
}

std::uint64_t SamplePeer::discardToEnd()
{
    constexpr int step = 1 << 20;
    QByteArray bytes(step, Qt::Uninitialized);
    std::uint64_t total = 0;
    for (;;) {
        const ssize_t count = ::recv(descriptor, bytes.data(), step, 0);
        require(count >= 0, "recv");
        if (count == 0)
            return total;
        total += static_cast<std::uint64_t>(count);
    }
}

void SamplePeer::answer()
{
    char ignored = 0;
    sockaddr_in name{};
    socklen_t size = sizeof name;
    require(::recvfrom(descriptor, &ignored, 1, 0, reinterpret_cast<sockaddr *>(&name), &size) >= 0, "recvfrom");
    require(::connect(descriptor, reinterpret_cast<sockaddr *>(&name), size) == 0, "connect");
}

void SamplePeer::reset()
{
    const linger atOnce{1, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close();
}

void SamplePeer::finish()
{
    if (isTcp)
        ::shutdown(descriptor, SHUT_WR);
    else
        require(::send(descriptor, nullptr, 0, MSG_NOSIGNAL) == 0, "send");
}

void SamplePeer::close()
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}
