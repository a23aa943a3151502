#include "tests/installation/recorder/recordingfixture.h"

using namespace LLDCmodule;
using Transport = SamplePeer::Transport;

namespace
{

/// How a recording gets its samples, and how that fails.
class RecordingLink : public RecordingTest
{
protected:
    RecordingLink() { open(); }

    SamplePeer source{Transport::Tcp, lease.address()};
};

TEST_F(RecordingLink, SaysThatThereIsNoSource)
{
    const auto where = tcp(source);
    source.close();
    EXPECT_EQ(linkKindOf([&] { link->connectToIf(where, 0); }), ekConnFailed);
}

TEST_F(RecordingLink, IsByTcpOrUdp)
{
    const auto refusal = [&](eINTERFACE_KIND kind, CORBA::ULong host, CORBA::ULong port) {
        return linkKindOf([&] { link->connectToIf(params(kind, host, port), 0); });
    };
    EXPECT_EQ(refusal(ifFPDP_SERIAL, source.host(), source.port()), ekIllegalIf);
    EXPECT_EQ(refusal(ifTCP, source.host(), 65536), ekIllegalIf);
    EXPECT_EQ(refusal(ifTCP, 0, source.port()), ekIllegalIf);
    EXPECT_EQ(linkKindOf([&] { session->setupNetworkServer(65536); }), ekIllegalIf);
    EXPECT_EQ(linkKindOf([&] { session->setupNetworkServerEx(0, 2, 0); }), ekIllegalIf);
    EXPECT_EQ(linkKindOf([&] { CORBA::String_var(session->setupNetworkTqXg("127.0.0.1", 0, 0)); }), ekIllegalIf);
    EXPECT_EQ(linkKindOf([&] { CORBA::String_var(session->setupNetworkTqXgEx("127.0.0.1", 0, 0)); }), ekIllegalIf);
}

TEST_F(RecordingLink, IsTheOnlyOne)
{
    session->setupNetworkServer(0);
    EXPECT_EQ(linkKindOf([&] { session->setupNetworkServer(0); }), ekWrongSequence);
    EXPECT_EQ(linkKindOf([&] { link->connectToIf(tcp(source), 0); }), ekWrongSequence);
}

TEST_F(RecordingLink, SaysThatItsPortIsTaken)
{
    const SamplePeer other(Transport::Tcp, "127.0.0.1");
    EXPECT_EQ(linkKindOf([&] { session->setupNetworkServer(other.port()); }), ekIfError);
}

TEST_F(RecordingLink, HasARateThatItsClassHolds)
{
    EXPECT_EQ(linkKindOf([&] { link->connectToIf(tcp(source), 1'000'001); }), ekDataRateUnavailable);
    EXPECT_EQ(linkKindOf([&] { session->setupNetworkServerEx(1'000'001, 0, 0); }), ekDataRateUnavailable);
    EXPECT_NE(link->connectToIf(tcp(source), 1'000'000), 0u);
}

TEST_F(RecordingLink, CanBeReplaced)
{
    NotifiedReceiver &told = announced();
    const CORBA::ULong first = link->connectToIf(tcp(source), 0);
    EXPECT_EQ(linkKindOf([&] { link->endConnection(first + 1); }), ekDisconnectFailed);
    source.accept().send(pattern(400));
    told.upTo(true, TQ_KORVE::rsRECORDING);
    EXPECT_EQ(seqIfDescription_var(link->getIfUsed())->length(), 1u);
    link->endConnection(first);
    EXPECT_EQ(seqIfDescription_var(link->getIfUsed())->length(), 0u);
    EXPECT_EQ(linkKindOf([&] { link->endConnection(first); }), ekDisconnectFailed);
    SamplePeer peer = sender();
    peer.send(pattern(800).right(400));
    peer.finish();
    told.upTo(true, TQ_KORVE::rsIDLE);
    EXPECT_EQ(stored(), pattern(800));
}

TEST_F(RecordingLink, BeginsWithAWholeSample)
{
    NotifiedReceiver &told = announced();
    const CORBA::ULong first = link->connectToIf(tcp(source), 0);
    source.accept().send(pattern(402));
    told.upTo(true, TQ_KORVE::rsRECORDING);
    link->endConnection(first);
    SamplePeer peer = sender();
    peer.send(pattern(800).right(400));
    peer.finish();
    told.upTo(true, TQ_KORVE::rsIDLE);
    EXPECT_EQ(stored(), pattern(800));
}

TEST_F(RecordingLink, IsKnownByWhatItWasSetTo)
{
    NotifiedReceiver &told = announced();
    const auto connect = [&](SamplePeer &to, CORBA::ULongLong frequencyHz, CORBA::ULong rateHz) {
        auto where = tcp(to);
        where.parameter = frequencyHz;
        const CORBA::ULong number = link->connectToIf(where, rateHz);
        to.accept().send(pattern(400));
        return number;
    };
    const CORBA::ULong first = connect(source, 98'500'000, 500'000);
    told.upTo(true, TQ_KORVE::rsRECORDING);
    link->endConnection(first);
    SamplePeer second(Transport::Tcp, lease.address());
    connect(second, 100'000'000, 250'000);
    second.finish();
    told.upTo(true, TQ_KORVE::rsIDLE);
    TQ_KORVE::seqINDEX_ENTRY_var index = control->getSeqOfIndexEntries(id, 0, 10);
    ASSERT_EQ(index->length(), 3u);
    EXPECT_EQ(index[0].tunerFrequency, 98'500'000u);
    EXPECT_EQ(index[0].sampleRate, 500'000u);
    EXPECT_EQ(index[1].recordOffset, 400u);
    EXPECT_EQ(index[1].tunerFrequency, 100'000'000u);
    EXPECT_EQ(index[2].timestamp - index[1].timestamp, 400u);
}

TEST_F(RecordingLink, TakesTheDatagramsOfAReplay)
{
    SamplePeer datagrams(Transport::Udp, lease.address());
    NotifiedReceiver &told = announced();
    link->connectToIf(udp(datagrams), 0);
    datagrams.answer();
    datagrams.send(pattern(400));
    datagrams.finish();
    told.upTo(true, TQ_KORVE::rsIDLE);
    EXPECT_EQ(stored(), pattern(400));
}

TEST_F(RecordingLink, ThatBreaksEndsTheRecording)
{
    NotifiedReceiver &told = announced();
    link->connectToIf(tcp(source), 0);
    source.accept().send(pattern(4000));
    told.upTo(true, TQ_KORVE::rsRECORDING);
    source.reset();
    told.upTo(true, TQ_KORVE::rsIDLE);
    EXPECT_TRUE(pattern(4000).startsWith(stored()));
    ASSERT_EQ(history().size(), 1);
    EXPECT_TRUE(history().first().contains("Connection reset")) << history().first().toStdString();
}

TEST_F(RecordingLink, TellsItsInterfaces)
{
    seqIfDescription_var available = link->getIfAvailable();
    ASSERT_EQ(available->length(), 2u);
    EXPECT_EQ(available[1].interfaceNumber, CORBA::ULong(ifUDP));
    EXPECT_EQ(session->getNetworkSourcePort(), 0u);
    const CORBA::ULong port = session->setupNetworkServer(0);
    seqIfDescription_var used = link->getIfUsed();
    ASSERT_EQ(used->length(), 1u);
    EXPECT_EQ(used[0].port, port);
}

TEST_F(RecordingLink, RefusesACommentWithoutMeasure)
{
    EXPECT_EQ(kindOf([&] { session->endRecordingSession(wide(QString(65536, 'x'))); }), TQ_KORVE::ekINVALID_VALUE);
    EXPECT_EQ(statusOf(id), CORBA::ULong(TQ_KORVE::rsREADY_FOR_RECORDING));
}

} // namespace
