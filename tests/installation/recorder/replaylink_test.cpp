#include "tests/installation/recorder/replayfixture.h"

#include <QtEndian>

using namespace LLDCmodule;
using Transport = SamplePeer::Transport;

namespace
{

QByteArray withWordsSwapped(const QByteArray &bytes)
{
    QByteArray swapped(bytes.size(), Qt::Uninitialized);
    qbswap<2>(bytes.constData(), bytes.size() / 2, swapped.data());
    return swapped;
}

/// How a replay reaches its peer, and how that fails.
class ReplayLink : public ReplayTest
{
protected:
    SamplePeer datagrams{Transport::Udp, lease.address()};
};

TEST_F(ReplayLink, ListensForWhoTakesTheSamples)
{
    open(pattern(40'000));
    const auto answer = link->waitForConnectionOnIf(params(ifTCP, 0, 0), fullSpeed);
    EXPECT_NE(answer.parameter, 0u);
    link->startDataTransfer(static_cast<CORBA::ULong>(answer.parameter)); // the recorder waits for the peer
    SamplePeer caller(Transport::Tcp, answer.address, static_cast<quint16>(answer.port));
    EXPECT_EQ(caller.readToEnd(), samples);
}

TEST_F(ReplayLink, SendsWholeSamplesInDatagrams)
{
    open(pattern(40'000));
    const auto answer = link->waitForConnectionOnIf(udp(datagrams), ownRate);
    link->startDataTransfer(static_cast<CORBA::ULong>(answer.parameter));
    QByteArray got;
    for (QByteArray datagram = datagrams.read(2000); !datagram.isEmpty(); datagram = datagrams.read(2000)) {
        EXPECT_EQ(datagram.size() % 4, 0);
        EXPECT_LE(datagram.size(), 1400);
        got += datagram;
    }
    EXPECT_EQ(got, samples);
}

TEST_F(ReplayLink, SendsToWhoSendsADatagramFirst)
{
    open(pattern(4000));
    const auto answer = link->waitForConnectionOnIf(params(ifUDP, 0, 0), ownRate);
    link->startDataTransfer(static_cast<CORBA::ULong>(answer.parameter));
    SamplePeer caller(Transport::Udp, answer.address, static_cast<quint16>(answer.port));
    caller.send("here");
    EXPECT_EQ(caller.readToEnd(), samples);
}

TEST_F(ReplayLink, SendsNumbersWithTheirLastByteFirst)
{
    open(pattern(400'004));
    session->setConvertHostToNetByteOrder(true);
    link->startDataTransfer(connect(fullSpeed));
    EXPECT_EQ(peer.readToEnd(), withWordsSwapped(samples));
}

TEST_F(ReplayLink, ListensAndSendsOnlyByTcpAndUdp)
{
    open(pattern(4000));
    const auto refusal = [&](eINTERFACE_KIND kind, CORBA::ULong host, CORBA::ULong port) {
        return linkKindOf([&] { link->waitForConnectionOnIf(params(kind, host, port), ownRate); });
    };
    EXPECT_EQ(refusal(ifFPDP_SERIAL, peer.host(), peer.port()), ekIllegalIf);
    EXPECT_EQ(refusal(ifTQXG, 0, 0), ekIllegalIf);
    EXPECT_EQ(refusal(ifSIGIQ, 0, 0), ekIllegalIf);
    EXPECT_EQ(refusal(ifTCP, peer.host(), 65536), ekIllegalIf);
    EXPECT_EQ(refusal(ifTCP, peer.host(), 0), ekIllegalIf);
}

TEST_F(ReplayLink, GoesStepByStep)
{
    open(pattern(40'000));
    const auto refusal = [&](auto action) { return linkKindOf(action); };
    EXPECT_EQ(refusal([&] { link->startDataTransfer(0); }), ekWrongSequence);
    EXPECT_EQ(refusal([&] { link->startDataTransfer(1); }), ekWrongSequence);
    const CORBA::ULong id = connect(1000);
    EXPECT_EQ(refusal([&] { link->waitForConnectionOnIf(tcp(peer), ownRate); }), ekWrongSequence);
    EXPECT_EQ(refusal([&] { link->stopDataTransfer(id); }), ekWrongSequence);
    EXPECT_EQ(refusal([&] { link->endConnection(id + 1); }), ekDisconnectFailed);
    link->startDataTransfer(id);
    EXPECT_EQ(refusal([&] { link->startDataTransfer(id); }), ekWrongSequence);
    link->endConnection(id);
    EXPECT_EQ(refusal([&] { link->startDataTransfer(id); }), ekWrongSequence);
    EXPECT_EQ(refusal([&] { link->endConnection(id); }), ekDisconnectFailed);
}

TEST_F(ReplayLink, SaysThatNobodyListens)
{
    open(pattern(4000));
    const auto where = tcp(peer);
    peer.close();
    EXPECT_EQ(linkKindOf([&] { link->waitForConnectionOnIf(where, ownRate); }), ekConnFailed);
}

TEST_F(ReplayLink, SaysThatItsPortIsTaken)
{
    open(pattern(4000));
    const SamplePeer other(Transport::Tcp, "127.0.0.1");
    EXPECT_EQ(linkKindOf([&] { link->waitForConnectionOnIf(params(ifTCP, 0, other.port()), ownRate); }), ekIfError);
}

TEST_F(ReplayLink, SaysThatTheRecordHasNoRateOfItsOwn)
{
    open(pattern(4000), {{"core:sample_rate", 0.4}});
    EXPECT_EQ(linkKindOf([&] { link->waitForConnectionOnIf(tcp(peer), ownRate); }), ekDataRateUnavailable);
    link->startDataTransfer(connect(fullSpeed));
    EXPECT_EQ(peer.readToEnd(), samples);
}

TEST_F(ReplayLink, GoesOnOverANewOneWhenThePeerHasGone)
{
    open(pattern(40'000'000));
    NotifiedReceiver &told = announced();
    const CORBA::ULong id = connect(fullSpeed);
    link->startDataTransfer(id);
    peer.read(1000);
    peer.close();
    told.upTo(true, TQ_KORVE::rsREADY_FOR_REPLAY);
    EXPECT_EQ(linkKindOf([&] { link->startDataTransfer(id); }), ekDataStreamUnavailable);
    EXPECT_EQ(statusOf(air), CORBA::ULong(TQ_KORVE::rsREADY_FOR_REPLAY));
    const int position = static_cast<int>(session->getCurrentFilePosition());
    EXPECT_GE(position, 1000);
    SamplePeer other(Transport::Tcp, lease.address());
    link->startDataTransfer(static_cast<CORBA::ULong>(link->waitForConnectionOnIf(tcp(other), fullSpeed).parameter));
    EXPECT_EQ(other.accept().readToEnd(), samples.mid(position));
}

TEST_F(ReplayLink, GoesOnOverANewOneWithAWholeSample)
{
    constexpr int sampleBytes = 65535 * 4; // one of each channel
    open(pattern(100 * sampleBytes), {{"core:sample_rate", 1e6}, {"core:num_channels", 65535}});
    NotifiedReceiver &told = announced();
    link->startDataTransfer(connect(fullSpeed));
    peer.read(1000);
    peer.close();
    told.upTo(true, TQ_KORVE::rsREADY_FOR_REPLAY);
    const int position = static_cast<int>(session->getCurrentFilePosition());
    EXPECT_EQ(position % sampleBytes, 0);
    SamplePeer other(Transport::Tcp, lease.address());
    link->startDataTransfer(static_cast<CORBA::ULong>(link->waitForConnectionOnIf(tcp(other), fullSpeed).parameter));
    EXPECT_TRUE(other.accept().readToEnd() == samples.mid(position));
}

TEST_F(ReplayLink, BringsAllAlsoToWhoSaysSomething)
{
    open(pattern(40'000'000)); // of which much waits in the recorder's socket when that is closed
    const CORBA::ULong id = connect(fullSpeed);
    peer.send("ready");
    link->startDataTransfer(id);
    EXPECT_TRUE(peer.readToEnd() == samples);
}

TEST_F(ReplayLink, SaysThatNobodyTakesItsDatagrams)
{
    open(pattern(40'000));
    NotifiedReceiver &told = announced();
    const auto answer = link->waitForConnectionOnIf(udp(datagrams), 10'000);
    datagrams.close();
    const auto id = static_cast<CORBA::ULong>(answer.parameter);
    link->startDataTransfer(id);
    told.upTo(true, TQ_KORVE::rsREADY_FOR_REPLAY);
    EXPECT_EQ(linkKindOf([&] { link->startDataTransfer(id); }), ekIfError);
}

TEST_F(ReplayLink, SaysThatTheSamplesHaveGone)
{
    open(pattern(40'000));
    NotifiedReceiver &told = announced();
    const CORBA::ULong id = connect(fullSpeed);
    writeFile(directory.filePath("state/recordings/" + QString(air.in()) + ".sigmf-data"), samples.left(20'000));
    link->startDataTransfer(id);
    EXPECT_EQ(peer.readToEnd(), samples.left(20'000));
    told.upTo(true, TQ_KORVE::rsREADY_FOR_REPLAY);
    EXPECT_EQ(linkKindOf([&] { link->startDataTransfer(id); }), ekDataStreamUnavailable);
}

TEST_F(ReplayLink, TellsItsInterfaces)
{
    open(pattern(4000));
    seqIfDescription_var available = link->getIfAvailable();
    ASSERT_EQ(available->length(), 2u);
    EXPECT_EQ(available[0].interfaceNumber, CORBA::ULong(ifTCP));
    EXPECT_EQ(available[1].interfaceNumber, CORBA::ULong(ifUDP));
    EXPECT_EQ(available[0].address, 0x7f000001u);
    EXPECT_EQ(seqIfDescription_var(link->getIfUsed())->length(), 0u);
    connect(ownRate);
    seqIfDescription_var used = link->getIfUsed();
    ASSERT_EQ(used->length(), 1u);
    EXPECT_EQ(used[0].interfaceNumber, CORBA::ULong(ifTCP));
    EXPECT_EQ(used[0].address, peer.host());
    EXPECT_EQ(used[0].port, CORBA::ULong(peer.port()));
}

} // namespace
