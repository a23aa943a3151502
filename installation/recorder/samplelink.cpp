#include "installation/recorder/samplelink.h"

#include "installation/recorder/addresstext.h"
#include "installation/recorder/wakeup.h"

#include <QDeadlineTimer>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace installation::recorder
{

namespace
{

constexpr int datagramRoom = 4 << 20;
constexpr int drainReads = 1 << 12; ///< of a peer that never pauses

[[noreturn]] void fail(int error, const QString &action, LLDCmodule::eLLDCKind kind = LLDCmodule::ekIfError)
{
    throw LinkError::ofSystem(error, action, kind);
}

sockaddr_in nameOf(const SampleLink::Address &address)
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(address.host);
    name.sin_port = htons(address.port);
    return name;
}

int openSocket(LLDCmodule::eINTERFACE_KIND kind)
{
    const int type = kind == LLDCmodule::ifUDP ? SOCK_DGRAM : SOCK_STREAM;
    const int descriptor = ::socket(AF_INET, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        fail(errno, QStringLiteral("cannot make a socket"));
    return descriptor;
}

bool isWait(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

bool isWritableWithin(int descriptor, std::chrono::milliseconds limit)
{
    const QDeadlineTimer end(limit);
    pollfd wait{descriptor, POLLOUT, 0};
    int ready = 0;
    do
        ready = ::poll(&wait, 1, static_cast<int>(end.remainingTime()));
    while (ready < 0 && errno == EINTR);
    return ready > 0;
}

/// A peer that is gone without a word, such as a host without power, breaks the link within two minutes.
void watchPeer(int descriptor)
{
    constexpr int on = 1;
    constexpr int idleSeconds = 60;
    constexpr int intervalSeconds = 15;
    constexpr int probes = 4;
    ::setsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, &idleSeconds, sizeof idleSeconds);
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, &intervalSeconds, sizeof intervalSeconds);
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPCNT, &probes, sizeof probes);
}

/// @p count as a system call has returned it; @p action is what it was for.
qint64 sentOrNothing(ssize_t count, const char *action)
{
    if (count >= 0)
        return count;
    if (isWait(errno))
        return 0;
    fail(errno, QLatin1String(action));
}

} // namespace

SampleLink SampleLink::connectTo(const Address &peer, std::chrono::milliseconds limit)
{
    SampleLink link(peer.kind, openSocket(peer.kind));
    link.connectWithin(peer, limit);
    if (peer.kind == LLDCmodule::ifTCP)
        watchPeer(link.descriptor);
    link.shownAddress = peer;
    link.peerIsThere = true;
    return link;
}

void SampleLink::connectWithin(const Address &peer, std::chrono::milliseconds limit)
{
    const sockaddr_in name = nameOf(peer);
    const QString action = QStringLiteral("cannot connect to %1").arg(toText(peer));
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0)
        return;
    if (errno != EINPROGRESS)
        fail(errno, action, LLDCmodule::ekConnFailed);
    if (!isWritableWithin(descriptor, limit))
        fail(ETIMEDOUT, action, LLDCmodule::ekConnFailed);
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
        error = errno;
    if (error != 0)
        throw LinkError(LLDCmodule::ekConnFailed, QStringLiteral("%1: %2").arg(action, qt_error_string(error)));
}

SampleLink SampleLink::listenOn(const Address &own)
{
    SampleLink link(own.kind, openSocket(own.kind));
    link.bindTo(own);
    return link;
}

void SampleLink::bindTo(const Address &own)
{
    const sockaddr_in name = nameOf(own);
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&name), sizeof name) != 0 ||
        (ownKind == LLDCmodule::ifTCP && ::listen(descriptor, 1) != 0))
        fail(errno, QStringLiteral("cannot listen on %1").arg(toText(own)));
    if (ownKind == LLDCmodule::ifUDP) // the system gives what it allows
        ::setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &datagramRoom, sizeof datagramRoom);
    shownAddress = own;
    learnOwnPort();
}

void SampleLink::learnOwnPort()
{
    sockaddr_in name{};
    socklen_t size = sizeof name;
    ::getsockname(descriptor, reinterpret_cast<sockaddr *>(&name), &size); // of a socket that is bound: cannot fail
    shownAddress.port = ntohs(name.sin_port);
}

SampleLink::SampleLink(SampleLink &&other) noexcept
    : ownKind(other.ownKind), descriptor(std::exchange(other.descriptor, -1)), shownAddress(other.shownAddress),
      peerIsThere(other.peerIsThere)
{
}

SampleLink::~SampleLink()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

bool SampleLink::tryAccept()
{
    sockaddr_in name{};
    socklen_t size = sizeof name;
    if (ownKind == LLDCmodule::ifUDP) { // to receive, or to learn where to send, is all the same
        char ignored = 0;
        const ssize_t count = ::recvfrom(descriptor, &ignored, 1, MSG_PEEK, reinterpret_cast<sockaddr *>(&name), &size);
        peerIsThere = count >= 0 && ::connect(descriptor, reinterpret_cast<const sockaddr *>(&name), size) == 0;
        return peerIsThere;
    }
    const int accepted = ::accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (accepted < 0) {
        if (isWait(errno) || errno == ECONNABORTED)
            return false;
        fail(errno, QStringLiteral("cannot take a connection")); // it would be there again at once, and for ever
    }
    ::close(std::exchange(descriptor, accepted)); // one peer is all there is
    watchPeer(descriptor);
    peerIsThere = true;
    return true;
}

qint64 SampleLink::trySend(const char *bytes, qint64 size)
{
    return sentOrNothing(::send(descriptor, bytes, size, MSG_NOSIGNAL), "cannot send");
}

qint64 SampleLink::trySendFile(int file, quint64 position, qint64 size)
{
    off_t offset = static_cast<off_t>(position);
    const ssize_t count = ::sendfile(descriptor, file, &offset, size);
    if (count == 0)
        throw LinkError(LLDCmodule::ekDataStreamUnavailable, QStringLiteral("the file of samples has become shorter"));
    return sentOrNothing(count, "cannot send");
}

std::optional<qint64> SampleLink::tryReceive(char *bytes, qint64 size)
{
    const ssize_t count = ::recv(descriptor, bytes, size, 0);
    if (count == 0)
        return std::nullopt;
    return sentOrNothing(count, "cannot receive");
}

SampleLink::Wait SampleLink::await(const SampleLink *link, short events, const Wakeup &wakeup,
                                   std::optional<std::chrono::nanoseconds> limit)
{
    using std::chrono::nanoseconds;
    constexpr long perSecond = 1'000'000'000;
    // Without events the socket is left out, or an end that is known already would be no wait at all.
    const bool socketCounts = link && events != 0;
    std::array waits{pollfd{wakeup.descriptor(), POLLIN, 0}, pollfd{socketCounts ? link->descriptor : -1, events, 0}};
    const nanoseconds::rep rest = std::max<nanoseconds::rep>(limit.value_or(nanoseconds(0)).count(), 0);
    const timespec time{rest / perSecond, rest % perSecond};
    if (::ppoll(waits.data(), waits.size(), limit ? &time : nullptr, nullptr) <= 0)
        return Wait::TimedOut;
    return waits[0].revents != 0 ? Wait::Woken : Wait::Ready;
}

void SampleLink::finish()
{
    if (ownKind == LLDCmodule::ifUDP) {
        ::send(descriptor, nullptr, 0, MSG_NOSIGNAL);
        return;
    }
    ::shutdown(descriptor, SHUT_WR);
    // Unread bytes would make the close of the socket a broken connection, and what is on its way would be lost.
    char ignored[4096];
    for (int reads = 0; reads < drainReads && ::recv(descriptor, ignored, sizeof ignored, 0) > 0; ++reads) {
    }
}

QString toText(const SampleLink::Address &address)
{
    return QStringLiteral("%1:%2").arg(addressText(address.host)).arg(address.port);
}

} // namespace installation::recorder
