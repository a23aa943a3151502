#include "tests/installation/manager/samplereceiver.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace
{

int listeningSocket()
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(descriptor, 1) != 0)
        throw std::runtime_error("a port of 127.0.0.1 cannot be listened on");
    return descriptor;
}

} // namespace

SampleReceiver::SampleReceiver() : listener(listeningSocket())
{
    thread = std::thread([this] { run(); });
}

SampleReceiver::~SampleReceiver()
{
    hangUp();
    thread.join();
    ::close(listener);
}

QString SampleReceiver::address() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    return QStringLiteral("127.0.0.1:%1").arg(ntohs(address.sin_port));
}

void SampleReceiver::hangUp()
{
    stopped = true;
    ::shutdown(listener, SHUT_RDWR);
    if (const int now = connection; now >= 0)
        ::shutdown(now, SHUT_RDWR);
}

QByteArray SampleReceiver::content() const
{
    const std::scoped_lock lock(mutex);
    return kept;
}

void SampleReceiver::keep(const char *bytes, ssize_t count)
{
    if (count <= 0)
        return;
    const std::scoped_lock lock(mutex);
    kept.append(bytes, static_cast<int>(count));
    received += static_cast<quint64>(count);
}

void SampleReceiver::run()
{
    while (!stopped) {
        connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        std::array<char, 4096> buffer;
        for (ssize_t count = 1; count > 0 && !stopped;) {
            count = ::recv(connection, buffer.data(), buffer.size(), 0);
            keep(buffer.data(), count);
        }
        if (const int done = connection.exchange(-1); done >= 0)
            ::close(done);
    }
}
