#include "installation/recorder/diskroom.h"
#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingformat.h"
#include "installation/recorder/recordingreceiver.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/samplepeer.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QTemporaryDir>

#include <atomic>
#include <cerrno>
#include <future>
#include <limits>
#include <thread>

using namespace installation::recorder;

namespace
{

constexpr std::chrono::seconds patience(20);
constexpr quint32 loopback = 0x7f000001;

/// A recording that has a place in a store; what happens at its end is up to the test.
class Receiving : public testing::Test
{
protected:
    Receiving()
    {
        Record record = newRecording({}, 1);
        record.id = id = store.ask([record](RecordStore &records) mutable {
            const RecordStore::Reservation place = records.reserve();
            writeWhole(place.samplesPath, {});
            record.id = place.id;
            records.adopt(record);
            return place.id;
        });
        made = record;
        path = store.ask([id = id](RecordStore &records) { return records.samplesPath(id); });
    }
    ~Receiving() override { setDiskError(0); }
    void start(std::chrono::milliseconds linkLimit = RecordingReceiver::usualLinkLimit)
    {
        receiver.emplace(std::make_unique<RecordingWriter>(path, sampleLayout(made), loopBytes),
                         RecordingBook(store, id),
                         [this] {
                             setDiskError(isClosing && roomBytes() > diskBytes ? ENOSPC : 0);
                             return quint64(1000);
                         },
                         RecordingReceiver::Listener{[this](auto stage) {
                                                         if (stage == RecordingReceiver::Stage::Recording)
                                                             recording.set_value();
                                                         isClosing = stage == RecordingReceiver::Stage::Closing;
                                                     },
                                                     [this] {
                                                         ended.set_value();
                                                         mayGo.get_future().wait_for(patience);
                                                     }},
                         linkLimit);
    }
    SamplePeer connected()
    {
        return {SamplePeer::Transport::Tcp, loopback, receiver->listenOn({LLDCmodule::ifTCP, loopback, 0}, {})};
    }
    /// Sends the samples and hangs up; returns when the recording has been closed.
    void recordToItsEnd(const QByteArray &samples = QByteArray(400, 's'))
    {
        SamplePeer source = connected();
        source.send(samples);
        ASSERT_EQ(recording.get_future().wait_for(patience), std::future_status::ready);
        source.finish();
        ASSERT_EQ(ended.get_future().wait_for(patience), std::future_status::ready);
    }
    /// What the samples take of the disk.
    quint64 roomBytes() const { return 512 * quint64(fileStatus(path).st_blocks); }
    Record record()
    {
        return store.ask([id = id](RecordStore &records) { return records.record(id); });
    }
    QStringList history()
    {
        QStringList texts;
        for (const Note &note : record().history)
            texts.append(note.text);
        return texts;
    }

    QTemporaryDir directory;
    StoreThread store{directory.filePath("state")};
    QString id;
    Record made;
    QString path;
    quint64 loopBytes = 0;
    quint64 diskBytes = std::numeric_limits<quint64>::max(); ///< for the samples, when their recording is closed
    std::atomic<bool> isClosing = false;
    std::promise<void> recording;
    std::promise<void> ended;
    std::promise<void> mayGo;
    std::optional<RecordingReceiver> receiver;
};

TEST_F(Receiving, KeepsACommentThatComesWhileItEndsByItself)
{
    start();
    recordToItsEnd();
    receiver->end("enough", std::chrono::milliseconds(0));
    EXPECT_EQ(history(), QStringList{"enough"});
    mayGo.set_value();
}

TEST_F(Receiving, EndsWhenNobodyWantsToRecord)
{
    mayGo.set_value();
    start(std::chrono::milliseconds(20));
    EXPECT_EQ(ended.get_future().wait_for(patience), std::future_status::ready);
    EXPECT_TRUE(store.ask([](RecordStore &records) { return records.records(); }).isEmpty());
}

TEST_F(Receiving, GivesSomeSamplesUpForItsMetaDataOnAFullDisk)
{
    const QByteArray samples(4 << 20, 's');
    diskBytes = 7 << 19; // 3.5 MiB
    mayGo.set_value();
    start();
    recordToItsEnd(samples);
    receiver->end({}, patience);
    EXPECT_EQ(record().status, KORVE_XML::KORVE_RecordData::IDLE);
    EXPECT_EQ(record().sizeBytes, 3u << 20);
    EXPECT_EQ(readFile(path), samples.left(3 << 20));
}

TEST_F(Receiving, GivesTheRoomOfALoopBackWhileItGoesOn)
{
    loopBytes = 1 << 20;
    mayGo.set_value();
    start();
    SamplePeer source = connected();
    source.send(QByteArray(8 << 20, 's'));
    const QDeadlineTimer end(patience);
    while ((record().startPosition < 7 << 20 || roomBytes() > 2 << 20) && !end.hasExpired())
        std::this_thread::yield();
    EXPECT_EQ(record().startPosition, 7u << 20);
    EXPECT_LE(roomBytes(), 2u << 20);
    source.finish();
}

TEST_F(Receiving, SaysThatItsRecordCouldNotBeClosed)
{
    start();
    mayGo.set_value();
    store.ask([id = id](RecordStore &records) { records.discard(id); });
    EXPECT_THROW(receiver->end({}, patience), RecorderError);
}

} // namespace
