#include "installation/recorder/outgoingconnection.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"

#include <QDeadlineTimer>

#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <linux/sockios.h>

#include <algorithm>
#include <cerrno>

namespace installation::recorder
{

namespace
{

constexpr std::size_t sendfileMost = 1 << 20;

using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Addresses resolve(const QString &host, quint16 port, const QString &name)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo *found = nullptr;
    const int error = ::getaddrinfo(host.toUtf8(), QByteArray::number(port), &hints, &found);
    if (error != 0)
        throw RecorderError(TQ_KORVE::ekCONNECTION_FAILURE,
                            QStringLiteral("%1: %2").arg(name, QString::fromLocal8Bit(::gai_strerror(error))));
    return {found, &::freeaddrinfo};
}

} // namespace

OutgoingConnection::OutgoingConnection(const QString &host, quint16 port, const std::stop_token &stop,
                                       const Timing &timing)
    : name(QStringLiteral("%1:%2").arg(host).arg(port)), timing(timing), stop(stop), stopCallback(stop, [this] { wakeup.wake(); })
{
    const Addresses addresses = resolve(host, port, name);
    for (const addrinfo *address = addresses.get(); address; address = address->ai_next)
        if (tryConnect(*address))
            return;
    throw RecorderError::ofSystem(errno, QStringLiteral("cannot connect to %1").arg(name))
        .as(TQ_KORVE::ekCONNECTION_FAILURE);
}

/// Leaves the reason in `errno`.
bool OutgoingConnection::tryConnect(const addrinfo &address)
{
    connection = Descriptor(::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (connection.get() < 0)
        return false;
    int error = ::connect(connection.get(), address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        socklen_t length = sizeof error;
        if (!waitFor(POLLOUT, timing.connectLimit))
            error = stop.stop_requested() ? ECANCELED : ETIMEDOUT;
        else
            ::getsockopt(connection.get(), SOL_SOCKET, SO_ERROR, &error, &length);
    }
    if (error == 0)
        return true;
    errno = error;
    return false;
}

bool OutgoingConnection::waitFor(short events, std::chrono::milliseconds limit)
{
    const QDeadlineTimer end(limit);
    for (;;) {
        pollfd waiting[]{{connection.get(), events, 0}, {wakeup.descriptor(), POLLIN, 0}};
        const int ready = ::poll(waiting, 2, static_cast<int>(end.remainingTime()));
        if (ready < 0 && errno == EINTR)
            continue;
        if (stop.stop_requested())
            return false;
        return ready > 0;
    }
}

void OutgoingConnection::fail(int error) const
{
    throw RecorderError::ofSystem(error, QStringLiteral("cannot send to %1").arg(name)).as(TQ_KORVE::ekNETWORK_FAILURE);
}

void OutgoingConnection::waitUntilWritable()
{
    if (!waitFor(POLLOUT, timing.stallLimit))
        fail(stop.stop_requested() ? ECANCELED : ETIMEDOUT);
}

void OutgoingConnection::send(const char *bytes, std::size_t count)
{
    while (count > 0) {
        if (stop.stop_requested())
            fail(ECANCELED);
        const ssize_t sent = ::send(connection.get(), bytes, count, MSG_NOSIGNAL);
        if (sent >= 0) {
            bytes += sent;
            count -= sent;
        } else if (errno == EAGAIN) {
            waitUntilWritable();
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
}

void OutgoingConnection::sendFile(const File &file, quint64 position, quint64 count)
{
    auto place = static_cast<off_t>(position);
    while (count > 0) {
        if (stop.stop_requested())
            fail(ECANCELED);
        const ssize_t sent =
            ::sendfile(connection.get(), file.handle(), &place, std::min<quint64>(count, sendfileMost));
        if (sent > 0)
            count -= sent;
        else if (sent == 0)
            throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("the file became shorter"));
        else if (errno == EAGAIN)
            waitUntilWritable();
        else if (errno != EINTR)
            fail(errno);
    }
}

void OutgoingConnection::finish()
{
    ::shutdown(connection.get(), SHUT_WR);
    drainUntilClosed();
    int unsent = 0;
    if (::ioctl(connection.get(), SIOCOUTQ, &unsent) == 0 && unsent > 0)
        fail(stop.stop_requested() ? ECANCELED : ETIMEDOUT);
}

/// What a receiver says is of no interest, but unread it would make an end of ours a broken connection.
void OutgoingConnection::drainUntilClosed()
{
    char ignored[4096];
    const QDeadlineTimer end(timing.closeLimit);
    while (!end.hasExpired() && waitFor(POLLIN, std::chrono::milliseconds(end.remainingTime()))) {
        const ssize_t count = ::recv(connection.get(), ignored, sizeof ignored, 0);
        if (count == 0)
            return;
        if (count < 0 && errno != EAGAIN && errno != EINTR)
            fail(errno);
    }
}

} // namespace installation::recorder
