#include "tests/installation/manager/filesink.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace
{

int listenOnLoopback()
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (listener < 0 || ::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, 1) != 0)
        throw std::runtime_error("no port to be had");
    return listener;
}

} // namespace

FileSink::FileSink() : listener(listenOnLoopback()), thread(&FileSink::take, this) {}

FileSink::~FileSink()
{
    close();
    if (thread.joinable())
        thread.join();
    ::close(listener);
}

std::uint16_t FileSink::port() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin_port);
}

std::string FileSink::content()
{
    thread.join();
    return bytes;
}

void FileSink::close()
{
    ::shutdown(listener, SHUT_RDWR); // ends the accepting
    if (connection >= 0)
        ::shutdown(connection, SHUT_RDWR);
}

void FileSink::take()
{
    connection = ::accept(listener, nullptr, nullptr);
    std::array<char, 65536> buffer{};
    for (ssize_t count = 0; (count = ::recv(connection, buffer.data(), buffer.size(), 0)) > 0;)
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    ::close(connection.exchange(-1));
}
