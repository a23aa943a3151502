#include "coresupport/tcpprobe.h"
#include "coresupport/ulmaos.h"
#include "tests/support/patience.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace
{
using namespace std::chrono_literals;

/// A bound TCP socket on loopback with a port of its own.
class LocalPort
{
public:
    LocalPort()
    {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(bind(descriptor, generic(), size), 0);
        EXPECT_EQ(getsockname(descriptor, generic(), &size), 0);
    }
    LocalPort(const LocalPort &) = delete;
    ~LocalPort()
    {
        for (const int client : clients)
            close(client);
        close(descriptor);
    }
    void listenWith(int backlog) { ASSERT_EQ(listen(descriptor, backlog), 0); }
    /// From here on connection requests are dropped: the queue of those that nobody accepts is full.
    void fallSilent()
    {
        listenWith(0);
        for (int i = 0; i < 4; ++i) {
            clients.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
            connect(clients.back(), generic(), sizeof address);
        }
    }
    unsigned short number() const { return ntohs(address.sin_port); }

private:
    sockaddr *generic() { return reinterpret_cast<sockaddr *>(&address); }

    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    std::vector<int> clients;
};

class PortProbe : public testing::Test
{
protected:
    LocalPort port;
};

TEST_F(PortProbe, ReachesAListener)
{
    port.listenWith(5);
    EXPECT_EQ(tcpProbeError("127.0.0.1", port.number(), 1s), 0);
    EXPECT_NE(UlmaOS::GetInstance().probe("127.0.0.1", port.number(), 32).reachable, 0);
}

TEST_F(PortProbe, TriesEveryAddressOfAName)
{
    port.listenWith(5); // not on ::1, which "localhost" may mean first
    EXPECT_EQ(tcpProbeError("localhost", port.number(), 1s), 0);
}

TEST_F(PortProbe, IsRefusedWhereNobodyListens)
{
    EXPECT_EQ(tcpProbeError("127.0.0.1", port.number(), 1s), ECONNREFUSED);
    const UlmaOS::ProbeReply reply = UlmaOS::GetInstance().probe("127.0.0.1", port.number(), 32);
    EXPECT_EQ(reply.reachable, 0);
    EXPECT_EQ(reply.errorNumber, ECONNREFUSED);
}

TEST_F(PortProbe, GivesUpOnASilentPort)
{
    port.fallSilent();
    Patience patience(20s, [this] { port.listenWith(5); }); // so that a probe which waits for longer is answered
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(tcpProbeError("127.0.0.1", port.number(), 50ms), ETIMEDOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 50ms);
    patience.end();
    EXPECT_FALSE(patience.isOver());
}

TEST_F(PortProbe, RefusesWhatIsNoAddress)
{
    EXPECT_EQ(tcpProbeError(nullptr, 8004, 1s), EINVAL);
    EXPECT_EQ(tcpProbeError("", 8004, 1s), EINVAL);
    EXPECT_EQ(tcpProbeError("127.0.0.1", 0, 1s), EINVAL);
    EXPECT_EQ(tcpProbeError("10.0.0.1.2.3", 8004, 1s), EHOSTUNREACH);
}
} // namespace
