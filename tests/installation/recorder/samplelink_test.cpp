#include "installation/recorder/samplelink.h"

#include "tests/installation/recorder/samplepeer.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

using namespace installation::recorder;

namespace
{

constexpr quint32 loopback = 0x7f000001;
constexpr std::chrono::seconds limit(20);

/// Which timer the system has set for the connection from @p ownPort to @p peerPort; 2 is the one that looks after a
/// peer that says nothing.
int timerOf(quint16 ownPort, quint16 peerPort)
{
    const auto name = [](quint16 port) { return "0100007F:" + QByteArray::number(port, 16).toUpper().rightJustified(4, '0'); };
    for (const QByteArray &line : readFile("/proc/self/net/tcp").split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        const bool isMeant = (ownPort == 0 || fields.value(1) == name(ownPort)) && (peerPort == 0 || fields.value(2) == name(peerPort));
        if (isMeant && fields.value(3) == "01")
            return fields.value(5).left(2).toInt();
    }
    ADD_FAILURE() << "there is no such connection";
    return -1;
}

TEST(LinkOfSamples, LooksAfterAPeerThatSaysNothing)
{
    SamplePeer listener(SamplePeer::Transport::Tcp, QStringLiteral("127.0.0.1"));
    const SampleLink to = SampleLink::connectTo({LLDCmodule::ifTCP, loopback, listener.port()}, limit);
    EXPECT_EQ(timerOf(0, listener.port()), 2);

    SampleLink from = SampleLink::listenOn({LLDCmodule::ifTCP, loopback, 0});
    const SamplePeer caller(SamplePeer::Transport::Tcp, loopback, from.address().port);
    while (!from.tryAccept()) {
    }
    EXPECT_EQ(timerOf(from.address().port, 0), 2);
}

} // namespace
