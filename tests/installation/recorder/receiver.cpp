#include "tests/installation/recorder/receiver.h"

#include "tests/support/waiting.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <stdexcept>

using installation::recorder::Descriptor;

namespace
{

void waitForInput(int descriptor)
{
    pollfd waiting{descriptor, POLLIN, 0};
    if (::poll(&waiting, 1, patienceMs) != 1)
        throw std::runtime_error("nothing comes");
}

} // namespace

Receiver::Receiver() : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(address);
    socklen_t length = sizeof name;
    if (::bind(listener.get(), reinterpret_cast<sockaddr *>(&name), length) != 0 || ::listen(listener.get(), 16) != 0 ||
        ::getsockname(listener.get(), reinterpret_cast<sockaddr *>(&name), &length) != 0)
        throw std::runtime_error("cannot listen");
    listeningPort = ntohs(name.sin_port);
}

Descriptor Receiver::accept()
{
    waitForInput(listener.get());
    return Descriptor(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
}

QByteArray Receiver::takeAll()
{
    const Descriptor connection = accept();
    QByteArray all;
    char bytes[65536];
    for (;;) {
        waitForInput(connection.get());
        const ssize_t count = ::recv(connection.get(), bytes, sizeof bytes, 0);
        if (count <= 0)
            return all;
        all.append(bytes, static_cast<int>(count));
    }
}

quint16 deafPort()
{
    return Receiver().port(); // it is closed at once
}
