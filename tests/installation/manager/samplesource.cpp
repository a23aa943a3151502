#include "tests/installation/manager/samplesource.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr quint64 pieceBytes = 1 << 16;

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int newSocket()
{
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

} // namespace

SampleSource::SampleSource(quint64 bytes) : bytes(bytes), descriptor(newSocket())
{
    const sockaddr_in address = loopback(0);
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(descriptor, 1) != 0)
        throw std::runtime_error("a port of 127.0.0.1 cannot be listened on");
    thread = std::thread([this] {
        const int connection = ::accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC);
        send(connection);
        ::close(connection);
    });
}

SampleSource::SampleSource(quint16 port, quint64 bytes) : bytes(bytes), descriptor(newSocket())
{
    const sockaddr_in address = loopback(port);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error("nobody listens there");
    thread = std::thread([this] {
        send(descriptor);
        ::shutdown(descriptor, SHUT_RDWR);
    });
}

SampleSource::~SampleSource()
{
    ::shutdown(descriptor, SHUT_RDWR); // also when nobody has come
    thread.join();
    ::close(descriptor);
}

QString SampleSource::address() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return QStringLiteral("127.0.0.1:%1").arg(ntohs(address.sin_port));
}

QByteArray SampleSource::content(quint64 begin, qsizetype count)
{
    QByteArray bytes(static_cast<int>(count), Qt::Uninitialized);
    for (quint64 i = 0; i < static_cast<quint64>(count); ++i)
        bytes[static_cast<int>(i)] = static_cast<char>((begin + i) * 2654435761u >> 24);
    return bytes;
}

void SampleSource::send(int connection) const
{
    for (quint64 sent = 0; sent < bytes;) {
        const QByteArray piece = content(sent, static_cast<qsizetype>(std::min<quint64>(pieceBytes, bytes - sent)));
        for (int begin = 0; begin < piece.size();) {
            const ssize_t count = ::send(connection, piece.data() + begin, piece.size() - begin, MSG_NOSIGNAL);
            if (count <= 0)
                return;
            begin += static_cast<int>(count);
        }
        sent += static_cast<quint64>(piece.size());
    }
}
