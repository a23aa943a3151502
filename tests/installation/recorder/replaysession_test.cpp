#include "tests/installation/recorder/sessionfixture.h"

using namespace TQ_KORVE;
using LLDCmodule::LLDC_Interface_Transmitter;
using LLDCmodule::LLDC_Interface_Transmitter_var;

namespace
{

const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();

class Replay : public SessionTest
{
protected:
    /// A replay of the record with @p bytes, whose link is still to be made.
    void open(const QByteArray &bytes, const QJsonObject &global = {{"core:sample_rate", 1e6}})
    {
        start(bytes, global);
        openAgain();
    }
    void openAgain()
    {
        session = control->getReplaySessionById(air, nobody);
        link = LLDC_Interface_Transmitter::_narrow(session);
    }
    /// Connects the recorder to @p peer and returns the number of the link.
    CORBA::ULong connect(SamplePeer &peer, CORBA::ULong samplesPerSecond)
    {
        const auto answer = link->waitForConnectionOnIf(tcp(peer), samplesPerSecond);
        peer.accept();
        return static_cast<CORBA::ULong>(answer.parameter);
    }

    SamplePeer peer{SamplePeer::Transport::Tcp, lease.address()};
    IF_ReplaySession_var session;
    LLDC_Interface_Transmitter_var link;
};

struct Speed {
    const char *name;
    CORBA::ULong samplesPerSecond;
};

class ReplayAt : public Replay, public testing::WithParamInterface<Speed>
{
};

TEST_P(ReplayAt, SendsEverySampleAndIsIdleThen)
{
    open(pattern(40'000));
    NotifiedReceiver &told = announced();
    link->startDataTransfer(connect(peer, GetParam().samplesPerSecond));
    EXPECT_EQ(peer.readToEnd(), samples);
    EXPECT_EQ(told.statusesUpTo(rsIDLE), (std::vector<CORBA::ULong>{rsREPLAYING, rsIDLE}));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
}

INSTANTIATE_TEST_SUITE_P(Speeds, ReplayAt,
                         testing::Values(Speed{"OwnRate", 0}, Speed{"FasterByAFactor", 5'000'000},
                                         Speed{"FullSpeed", 0xffffffff}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(Replay, ShowsItsStatesInAllLists)
{
    start(pattern(4000));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
    openAgain();
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsREADY_FOR_REPLAY));
    link->startDataTransfer(connect(peer, 10));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsREPLAYING));
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())[0].recordStatus, CORBA::ULong(rsREPLAYING));
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecordsEx3())[0].recordStatus, CORBA::ULong(rsREPLAYING));
    session->endReplaySession();
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
    EXPECT_THROW(session->getCurrentFilePosition(), CORBA::OBJECT_NOT_EXIST);
}

TEST_F(Replay, IsOneOfARecord)
{
    open(pattern(4000));
    session->setReplayBegin(400);
    const IF_ReplaySession_var same = control->getReplaySessionById(air, nobody);
    EXPECT_EQ(same->getReplayInformation().startPosition, 400u);
}

TEST_F(Replay, KeepsItsRecordFromBeingRemoved)
{
    open(pattern(4000));
    control->setDeletableFlagOfRecord(air);
    EXPECT_EQ(kindOf([&] { control->removeRecord(air); }), ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    control->setRecordIdle(air);
    EXPECT_TRUE(control->removeRecord(air));
}

TEST_F(Replay, SaysThatNobodyListens)
{
    open(pattern(4000));
    const auto where = tcp(peer);
    peer.close();
    EXPECT_EQ(linkKindOf([&] { link->waitForConnectionOnIf(where, ownRate); }), LLDCmodule::ekConnFailed);
}

TEST_F(Replay, IsEndedWithTheRecordersProcess)
{
    open(pattern(4000));
    link->startDataTransfer(connect(peer, 10));
    serve({});
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
}

} // namespace
