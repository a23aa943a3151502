#include "benchmarks/recorder/samplesink.h"

#include "benchmarks/support/require.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

void SampleSum::add(const char *bytes, qint64 size)
{
    for (qint64 i = 0; i < size; ++i)
        sum += static_cast<unsigned char>(bytes[i]) * (position++ % 65521 + 1);
}

SampleSink::SampleSink(bool checks) : checks(checks), listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(host);
    socklen_t size = sizeof name;
    require(::bind(listener, reinterpret_cast<sockaddr *>(&name), size) == 0 && ::listen(listener, 1) == 0 &&
                ::getsockname(listener, reinterpret_cast<sockaddr *>(&name), &size) == 0,
            "a socket listens on loopback");
    ownPort = ntohs(name.sin_port);
    thread = std::thread([this] { total.set_value(readToEnd()); });
}

SampleSink::~SampleSink()
{
    thread.join();
    ::close(listener);
}

quint64 SampleSink::readToEnd()
{
    const int connection = ::accept(listener, nullptr, nullptr);
    require(connection >= 0, "somebody connects");
    std::vector<char> bytes(1 << 20);
    quint64 all = 0;
    for (;;) {
        const ssize_t count = ::recv(connection, bytes.data(), bytes.size(), 0);
        require(count >= 0, "the stream can be read");
        if (count == 0)
            break;
        if (checks)
            sum.add(bytes.data(), count);
        all += quint64(count);
    }
    ::close(connection);
    return all;
}

quint64 SampleSink::received()
{
    return total.get_future().get();
}
