#include "tests/installation/recorder/replayfixture.h"

#include <QFile>

#include <chrono>

using namespace TQ_KORVE;

namespace
{

class Replay : public ReplayTest
{
};

struct Speed {
    const char *name;
    CORBA::ULong samplesPerSecond;
};

class ReplayAt : public ReplayTest, public testing::WithParamInterface<Speed>
{
};

TEST_P(ReplayAt, SendsEverySampleAndIsIdleThen)
{
    open(pattern(40'000));
    NotifiedReceiver &told = announced();
    link->startDataTransfer(connect(GetParam().samplesPerSecond));
    EXPECT_EQ(peer.readToEnd(), samples);
    EXPECT_EQ(told.statusesUpTo(rsIDLE), (std::vector<CORBA::ULong>{rsREPLAYING, rsIDLE}));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
}

INSTANTIATE_TEST_SUITE_P(Speeds, ReplayAt,
                         testing::Values(Speed{"OwnRate", 0}, Speed{"FasterByAFactor", 5'000'000},
                                         Speed{"FullSpeed", 0xffffffff}),
                         [](const auto &info) { return std::string(info.param.name); });

struct Pace {
    const char *name;
    double rateOfTheRecordHz;
    CORBA::ULong wanted;
};

class ReplayPace : public ReplayTest, public testing::WithParamInterface<Pace>
{
};

TEST_P(ReplayPace, IsNeverFasterThanItIsTold)
{
    using namespace std::chrono_literals;
    open(pattern(40'000), {{"core:sample_rate", GetParam().rateOfTheRecordHz}});
    const CORBA::ULong id = connect(GetParam().wanted);
    const auto begin = std::chrono::steady_clock::now();
    link->startDataTransfer(id);
    EXPECT_EQ(peer.readToEnd(), samples);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 190ms); // 10 000 samples, 50 000 a second, but for one piece
}

INSTANTIATE_TEST_SUITE_P(Paces, ReplayPace,
                         testing::Values(Pace{"OfTheRecord", 50e3, 0}, Pace{"FasterByAFactor", 1e3, 50'000},
                                         Pace{"Slower", 1e6, 50'000}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(Replay, ShowsItsStatesInAllLists)
{
    start(pattern(4000));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
    openAgain();
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsREADY_FOR_REPLAY));
    link->startDataTransfer(connect(10));
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
    const IF_ReplaySession_var same = control->getReplaySessionById(air, TQ_KORVE_IT::IF_Korve_IT::_nil());
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

TEST_F(Replay, StandsStillInAPause)
{
    open(pattern(40'000));
    const CORBA::ULong id = connect(1000);
    link->startDataTransfer(id);
    QByteArray got = peer.read(80);
    link->stopDataTransfer(id);
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsREADY_FOR_REPLAY));
    const int position = static_cast<int>(session->getCurrentFilePosition());
    EXPECT_GE(position, 80);
    EXPECT_LT(position, samples.size());
    got += peer.read(position - 80);
    EXPECT_EQ(got, samples.left(position));
    session->setCurrentFilePosition(39'600);
    EXPECT_EQ(session->getCurrentFilePosition(), 39'600u);
    link->startDataTransfer(id);
    EXPECT_EQ(peer.readToEnd(), samples.mid(39'600));
}

TEST_F(Replay, MovesItsPosition)
{
    open(pattern(40'000));
    EXPECT_EQ(session->getCurrentFilePosition(), 0u);
    link->startDataTransfer(connect(1000));
    peer.read(40);
    const CORBA::ULongLong before = session->getCurrentFilePosition();
    peer.read(400);
    EXPECT_GT(session->getCurrentFilePosition(), before);
}

TEST_F(Replay, JumpsWhileItPlays)
{
    open(pattern(4'000'000));
    link->startDataTransfer(connect(1000));
    peer.read(40);
    session->setCurrentFilePosition(3'999'960);
    const QByteArray rest = peer.readToEnd();
    EXPECT_LT(rest.size(), 40'000);
    EXPECT_EQ(rest.right(40), samples.right(40));
}

TEST_F(Replay, PlaysASectionSeveralTimes)
{
    open(pattern(4000));
    session->setReplayBegin(400);
    session->setReplayEnd(1200);
    EXPECT_EQ(session->setNoOfReplays(3), 3u);
    link->startDataTransfer(connect(fullSpeed));
    EXPECT_EQ(peer.readToEnd(), samples.mid(400, 800).repeated(3));
}

TEST_F(Replay, PlaysWithoutEnd)
{
    open(pattern(4000));
    EXPECT_EQ(session->setNoOfReplays(0), 0u);
    link->startDataTransfer(connect(fullSpeed));
    EXPECT_EQ(peer.read(4000 * 500), samples.repeated(500));
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsREPLAYING));
    session->endReplaySession();
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
}

TEST_F(Replay, RefusesPlacesOutsideTheRecord)
{
    open(pattern(4000));
    EXPECT_EQ(kindOf([&] { session->setReplayBegin(4000); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { session->setReplayEnd(4001); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { session->setCurrentFilePosition(2); }), ekINVALID_VALUE);
}

TEST_F(Replay, TellsWhatItPlays)
{
    open(pattern(4000));
    session->setReplayBegin(400);
    session->setReplayEnd(1200);
    const struRECORD_DETAILS details = session->getReplayInformation();
    EXPECT_EQ(details.size, 4000u);
    EXPECT_EQ(details.sampleRate, 1'000'000u);
    EXPECT_EQ(details.tunerFrequency, 98'500'000u);
    EXPECT_EQ(details.startPosition, 400u);
    EXPECT_EQ(details.stopPosition, 1200u);
    EXPECT_EQ(session->getDatarateClass(), drVUHF_1M);
}

TEST_F(Replay, OfAnUnknownRecordIsRefused)
{
    start(pattern(4000));
    const auto none = TQ_KORVE_IT::IF_Korve_IT::_nil();
    EXPECT_EQ(kindOf([&] { IF_ReplaySession_var(control->getReplaySessionById("R0", none)); }), ekINVALID_RECORD_ID);
    EXPECT_EQ(kindOf([&] { control->setRecordIdle("R0"); }), ekINVALID_RECORD_ID);
    EXPECT_TRUE(QFile::remove(directory.filePath("state/recordings/" + QString(air.in()) + ".sigmf-data")));
    EXPECT_EQ(kindOf([&] { IF_ReplaySession_var(control->getReplaySessionById(air, none)); }), ekRECORD_CORRUPTED);
}

TEST_F(Replay, IsEndedWithTheRecordersProcess)
{
    open(pattern(4000));
    link->startDataTransfer(connect(10));
    serve({});
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
}

} // namespace
