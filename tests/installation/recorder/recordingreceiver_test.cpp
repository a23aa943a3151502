#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingformat.h"
#include "installation/recorder/recordingreceiver.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/samplepeer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <future>

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
    }
    void start(std::chrono::milliseconds linkLimit = RecordingReceiver::usualLinkLimit)
    {
        const QString path = store.ask([id = id](RecordStore &records) { return records.samplesPath(id); });
        receiver.emplace(std::make_unique<RecordingWriter>(path, sampleLayout(made), 0), RecordingBook(store, id),
                         [] { return quint64(1000); },
                         RecordingReceiver::Listener{[this](auto stage) {
                                                         if (stage == RecordingReceiver::Stage::Recording)
                                                             recording.set_value();
                                                     },
                                                     [this] {
                                                         ended.set_value();
                                                         mayGo.get_future().wait_for(patience);
                                                     }},
                         linkLimit);
    }
    /// Sends some samples and hangs up; returns when the recording is being closed.
    void recordToItsEnd()
    {
        SamplePeer source(SamplePeer::Transport::Tcp, loopback, receiver->listenOn({LLDCmodule::ifTCP, loopback, 0}, {}));
        source.send(QByteArray(400, 's'));
        ASSERT_EQ(recording.get_future().wait_for(patience), std::future_status::ready);
        source.finish();
        ASSERT_EQ(ended.get_future().wait_for(patience), std::future_status::ready);
    }
    QStringList history()
    {
        QStringList texts;
        for (const Note &note : store.ask([id = id](RecordStore &records) { return records.record(id); }).history)
            texts.append(note.text);
        return texts;
    }

    QTemporaryDir directory;
    StoreThread store{directory.filePath("state")};
    QString id;
    Record made;
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

TEST_F(Receiving, SaysThatItsRecordCouldNotBeClosed)
{
    start();
    mayGo.set_value();
    store.ask([id = id](RecordStore &records) { records.discard(id); });
    EXPECT_THROW(receiver->end({}, patience), RecorderError);
}

} // namespace
