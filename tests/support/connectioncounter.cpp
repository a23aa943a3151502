#include "tests/support/connectioncounter.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

ConnectionCounter::ConnectionCounter(const char *address, unsigned short port)
    : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
    const int yes = 1; // connections of who was there before may still be ending
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    ::inet_pton(AF_INET, address, &name.sin_addr);
    if (::bind(listener, reinterpret_cast<const sockaddr *>(&name), sizeof name) != 0 ||
        ::listen(listener, SOMAXCONN) != 0)
        throw std::runtime_error(std::string("a port of ") + address + " cannot be listened on");
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
