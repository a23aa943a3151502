#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/recordingfixture.h"

#include <QDir>

using namespace TQ_KORVE;

namespace
{

class Recording : public RecordingTest
{
};

TEST_F(Recording, KeepsEverySampleThatCame)
{
    open();
    EXPECT_EQ(statusOf(id), CORBA::ULong(rsREADY_FOR_RECORDING));
    const QByteArray bytes = pattern(4'000'000);
    recordAll(bytes);
    EXPECT_EQ(stored(), bytes);
    EXPECT_EQ(notified->statusesUpTo(rsIDLE), (std::vector<CORBA::ULong>{rsRECORDING, rsINDEXING, rsIDLE}));
    const struMETA_DATA record = metaData();
    EXPECT_EQ(record.recordStatus, CORBA::ULong(rsIDLE));
    EXPECT_EQ(record.size, 4'000'000u);
    EXPECT_EQ(record.stopTime - record.startTime, 1'000'000u); // a million samples at the rate of the class
    EXPECT_EQ(record.dataRate, CORBA::ULong(drVUHF_1M));
    EXPECT_EQ(record.dataFormat, CORBA::ULong(dfRAW));
    EXPECT_THROW(CORBA::String_var(session->getId()), CORBA::OBJECT_NOT_EXIST);
}

TEST_F(Recording, ConnectsToItsSource)
{
    open();
    SamplePeer source(SamplePeer::Transport::Tcp, lease.address());
    auto where = tcp(source);
    where.parameter = 98'500'000;
    EXPECT_NE(link->connectToIf(where, 500'000), 0u);
    source.accept().send(pattern(4000));
    NotifiedReceiver &told = announced();
    source.finish();
    told.upTo(true, rsIDLE);
    EXPECT_EQ(stored(), pattern(4000));
    const struRECORD_DETAILS details = control->getRecordDetails(id);
    EXPECT_EQ(details.tunerFrequency, 98'500'000u);
    EXPECT_EQ(details.sampleRate, 500'000u);
    EXPECT_EQ(details.bandwidth, 500'000u);
    seqINDEX_ENTRY_var index = control->getSeqOfIndexEntries(id, 0, 2);
    ASSERT_EQ(index->length(), 2u);
    EXPECT_EQ(index[1].recordOffset, 4000u);
    EXPECT_EQ(index[1].timestamp - index[0].timestamp, 2000u);
}

TEST_F(Recording, TakesDatagrams)
{
    open();
    const auto port = static_cast<quint16>(session->setupNetworkServerEx(100'000, 1, 0));
    EXPECT_EQ(session->getNetworkSourcePort(), port);
    NotifiedReceiver &told = announced();
    SamplePeer peer(SamplePeer::Transport::Udp, 0x7f000001, port);
    for (int i = 0; i < 10; ++i)
        peer.send(pattern(4000).mid(400 * i, 400));
    peer.finish();
    told.upTo(true, rsIDLE);
    EXPECT_EQ(stored(), pattern(4000));
    EXPECT_EQ(metaData().stopTime - metaData().startTime, 10'000u);
}

TEST_F(Recording, EndsWithACommentThatIsKept)
{
    open();
    NotifiedReceiver &told = announced();
    SamplePeer peer = sender();
    peer.send(pattern(4000));
    told.upTo(true, rsRECORDING);
    const QString comment = QString::fromUtf8("enough \xF0\x9F\x93\xBB");
    session->endRecordingSession(wide(comment));
    EXPECT_EQ(statusOf(id), CORBA::ULong(rsIDLE));
    EXPECT_EQ(stored(), pattern(4000));
    EXPECT_EQ(history(), QStringList{comment});
    serve({});
    EXPECT_EQ(history(), QStringList{comment});
    EXPECT_EQ(stored(), pattern(4000));
}

TEST_F(Recording, WithoutACommentHasNoHistory)
{
    open();
    recordAll(pattern(4000));
    EXPECT_TRUE(history().isEmpty());
}

TEST_F(Recording, WithoutASampleLeavesNoRecord)
{
    open();
    NotifiedReceiver &told = announced();
    session->endRecordingSession(wide("never mind"));
    told.upTo(false, 1);
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 0u);
    EXPECT_TRUE(QDir(directory.filePath("state/recordings")).isEmpty());
}

TEST_F(Recording, KeepsWholeSamplesOnly)
{
    open();
    recordAll(pattern(4003));
    EXPECT_EQ(stored(), pattern(4000));
}

TEST_F(Recording, TurnsNumbersThatComeWithTheirLastByteFirst)
{
    open();
    session->setConvertNetToHostByteOrder(true);
    recordAll(QByteArray::fromHex("0102030405060708"));
    EXPECT_EQ(stored(), QByteArray::fromHex("0201040306050807"));
}

TEST_F(Recording, AsALoopKeepsTheLastBytesInOrder)
{
    open(drVUHF_1M, 1);
    const QByteArray bytes = pattern(5'000'000);
    recordAll(bytes);
    EXPECT_EQ(stored(), bytes.right(1 << 20));
    const struMETA_DATA record = metaData();
    EXPECT_EQ(record.size, 1u << 20);
    EXPECT_EQ(record.recordingLoopSize, 1u << 20);
    EXPECT_EQ(record.startPosition, 0u);
    EXPECT_EQ(record.stopPosition, 1u << 20);
    EXPECT_EQ(record.stopTime - record.startTime, (1u << 20) / 4);
}

TEST_F(Recording, AsALoopThatIsNotFullKeepsEverything)
{
    open(drVUHF_1M, 1);
    recordAll(pattern(4000));
    EXPECT_EQ(stored(), pattern(4000));
}

TEST_F(Recording, IsListedWhileItGoesOn)
{
    open();
    SamplePeer peer = sender();
    NotifiedReceiver &told = announced();
    peer.send(pattern(4000));
    told.upTo(true, rsRECORDING);
    seqMETA_DATA_var active = control->getActiveSessions();
    ASSERT_EQ(active->length(), 1u);
    EXPECT_STREQ(active[0].recordID, id);
    EXPECT_EQ(active[0].recordStatus, CORBA::ULong(rsRECORDING));
    const auto none = TQ_KORVE_IT::IF_Korve_IT::_nil();
    EXPECT_EQ(kindOf([&] { IF_ReplaySession_var(control->getReplaySessionById(id, none)); }),
              ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    EXPECT_EQ(kindOf([&] { control->removeRecord(id); }), ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
}

TEST_F(Recording, TakesCommentsAndBookmarksMeanwhile)
{
    open();
    SamplePeer peer = sender();
    peer.send(pattern(4000));
    control->setRecordComment(id, wide("air"));
    control->addBookmark(id, 7, wide("here"));
    control->addHistory(id, wide("listened to"));
    control->setRecordIdle(id);
    EXPECT_EQ(narrow(metaData().recordName), "air");
    EXPECT_EQ(seqBookmarks_var(control->getBookmarks(id))->length(), 1u);
    EXPECT_EQ(history(), QStringList{"listened to"});
    EXPECT_EQ(stored(), pattern(4000));
}

TEST_F(Recording, CanBePlayedAfterwards)
{
    open();
    recordAll(pattern(4000));
    const IF_ReplaySession_var replay = control->getReplaySessionById(id, TQ_KORVE_IT::IF_Korve_IT::_nil());
    const auto transmitter = LLDCmodule::LLDC_Interface_Transmitter_var(LLDCmodule::LLDC_Interface_Transmitter::_narrow(replay));
    SamplePeer peer(SamplePeer::Transport::Tcp, lease.address());
    const auto answer = transmitter->waitForConnectionOnIf(tcp(peer), fullSpeed);
    transmitter->startDataTransfer(static_cast<CORBA::ULong>(answer.parameter));
    EXPECT_EQ(peer.accept().readToEnd(), pattern(4000));
}

TEST_F(Recording, KeepsNoRoomWhenItIsRemoved)
{
    open();
    recordAll(pattern(4000));
    control->setDeletableFlagOfRecord(id);
    EXPECT_TRUE(control->removeRecord(id));
    const QString open = QStringLiteral("/proc/%1/fd").arg(recorder->processId());
    for (const QFileInfo &file : QDir(open).entryInfoList(QDir::AllEntries | QDir::System))
        EXPECT_FALSE(file.symLinkTarget().contains(id.in())) << file.symLinkTarget().toStdString();
}

TEST_F(Recording, NeedsRoomForItsMetaData)
{
    {
        const FullDisk limit(100);
        serve({});
    }
    EXPECT_EQ(kindOf([&] { open(); }), ekNO_SPACE_LEFT_ON_DEVICE);
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 0u);
    EXPECT_TRUE(QDir(directory.filePath("state/recordings")).isEmpty());
}

TEST_F(Recording, EndsOnAFullDiskWithWhatWasStored)
{
    {
        const FullDisk limit(2 << 20);
        serve({});
    }
    open();
    const QByteArray bytes = pattern(4 << 20);
    NotifiedReceiver &told = announced();
    SamplePeer peer = sender();
    EXPECT_THROW(
        while (true) { peer.send(bytes); }, std::runtime_error); // the recorder closes the connection
    told.upTo(true, rsIDLE);
    const QByteArray kept = stored();
    EXPECT_GT(kept.size(), 1 << 20);
    EXPECT_EQ(kept, bytes.left(kept.size()));
    EXPECT_EQ(metaData().size, quint64(kept.size()));
    ASSERT_EQ(history().size(), 1);
    EXPECT_TRUE(history().first().contains("File too large")) << history().first().toStdString();
}

} // namespace
