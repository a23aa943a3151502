#include "tests/commands/connectioncounter.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

ConnectionCounter::ConnectionCounter() : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, SOMAXCONN) != 0)
        throw std::runtime_error("a port of 127.0.0.1 cannot be listened on");
}

ConnectionCounter::~ConnectionCounter()
{
    ::close(listener);
}

unsigned short ConnectionCounter::port() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin_port);
}

int ConnectionCounter::count()
{
    for (int connection = 0; (connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0; ++connections)
        ::close(connection);
    return connections;
}
