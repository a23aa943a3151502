#include "tests/installation/recorder/recordingfixture.h"

#include <QDeadlineTimer>

#include <thread>

using namespace TQ_KORVE;

namespace
{

/// A recorder that is killed while it records.
class KilledRecording : public RecordingTest
{
protected:
    /// Sends until the list of records shows samples that are stored.
    QByteArray sendUntilStored(SamplePeer &peer)
    {
        const QByteArray piece = pattern(100'000);
        QByteArray sent;
        const QDeadlineTimer end(60'000);
        while (metaData().size < 1'000'000 && !end.hasExpired()) {
            peer.send(piece);
            sent += piece;
        }
        return sent;
    }
    void waitUntilInOrder()
    {
        const QDeadlineTimer end(60'000);
        while (metaData().recordStatus == CORBA::ULong(rsINDEXING) && !end.hasExpired())
            std::this_thread::yield();
    }
};

TEST_F(KilledRecording, LeavesAReadableRecordOfWhatWasStored)
{
    open();
    SamplePeer peer = sender();
    const QByteArray sent = sendUntilStored(peer);
    recorder->kill();
    serve({});
    const struMETA_DATA record = metaData();
    EXPECT_EQ(record.recordStatus, CORBA::ULong(rsIDLE));
    EXPECT_GE(record.size, 1'000'000u);
    EXPECT_EQ(stored(), sent.left(static_cast<int>(record.size)));
}

TEST_F(KilledRecording, LeavesALoopInOrder)
{
    open(drVUHF_1M, 1);
    SamplePeer peer = sender();
    QByteArray sent = sendUntilStored(peer);
    const QDeadlineTimer end(60'000);
    while (metaData().startPosition < (1 << 20) && !end.hasExpired()) {
        peer.send(pattern(100'000));
        sent += pattern(100'000);
    }
    recorder->kill();
    serve({});
    waitUntilInOrder();
    const struMETA_DATA record = metaData();
    EXPECT_EQ(record.recordStatus, CORBA::ULong(rsIDLE));
    EXPECT_EQ(record.size, 1u << 20);
    EXPECT_TRUE(sent.contains(stored()));
}

TEST_F(KilledRecording, LeavesALoopInOrderThatWasBeingClosed)
{
    constexpr int loopMebibytes = 64;
    constexpr CORBA::ULongLong begin = 5 << 20;
    open(drVUHF_1M, loopMebibytes);
    const QByteArray sent = pattern((loopMebibytes << 20) + int(begin));
    NotifiedReceiver &told = announced();
    SamplePeer peer = sender();
    peer.send(sent);
    peer.finish();
    told.upTo(true, rsINDEXING);
    while (metaData().startPosition != begin && metaData().recordStatus != CORBA::ULong(rsIDLE)) {
        // from there on the store knows all of the loop, and it moves
    }
    recorder->kill();
    serve({});
    EXPECT_NE(metaData().recordStatus, CORBA::ULong(rsRECORDING));
    waitUntilInOrder();
    EXPECT_EQ(metaData().recordStatus, CORBA::ULong(rsIDLE));
    EXPECT_EQ(metaData().size, CORBA::ULongLong(loopMebibytes) << 20);
    EXPECT_TRUE(stored() == sent.right(loopMebibytes << 20));
}

} // namespace
