#include "installation/recorder/file.h"
#include "installation/recorder/looporder.h"
#include "installation/recorder/recordingformat.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace installation::recorder;
using KORVE_XML::KORVE_RecordData;

namespace
{

/// What a recorder leaves that is killed while it records, and what the next one makes of it.
class InterruptedRecording : public testing::Test
{
protected:
    /// A recording of which the store knows the bytes from @p begin to @p end, and the disk @p present.
    void leave(quint64 begin, quint64 end, const QByteArray &present)
    {
        RecordStore store(directory.path());
        const RecordStore::Reservation place = store.reserve();
        id = place.id;
        writeWhole(place.samplesPath, {});
        Record record = newRecording({}, 1'700'000'000'000'000);
        record.id = id;
        store.adopt(record);
        if (end > 0)
            store.update(id, [&](Record &recording) {
                recording.sizeBytes = recording.stopPosition = end;
                recording.startPosition = begin;
                recording.index = {{begin, 1, 2, 3, 4}, {end, 2, 2, 3, 4}};
            });
        samplesPath = store.samplesPath(id);
        orderedPath = store.orderedPath(id);
        writeFile(samplesPath, present);
    }
    void expectRecord(const QByteArray &samples)
    {
        RecordStore store(directory.path());
        EXPECT_TRUE(store.refused().isEmpty());
        ASSERT_EQ(store.records().size(), 1);
        const Record record = store.record(id);
        EXPECT_EQ(record.status, KORVE_RecordData::IDLE);
        EXPECT_EQ(record.sizeBytes, quint64(samples.size()));
        EXPECT_EQ(record.startPosition, 0u);
        EXPECT_EQ(record.stopPosition, quint64(samples.size()));
        EXPECT_EQ(record.index.first().offsetBytes, 0u);
        EXPECT_EQ(record.index.last().offsetBytes, quint64(samples.size()));
        EXPECT_EQ(readFile(samplesPath), samples);
        EXPECT_FALSE(QFile::exists(orderedPath));
    }

    QTemporaryDir directory;
    QString id;
    QString samplesPath;
    QString orderedPath;
};

TEST_F(InterruptedRecording, EndsWithWhatIsStoredOfIt)
{
    leave(0, 8, "abcdefghijkl");
    expectRecord("abcdefgh");
    expectRecord("abcdefgh"); // also at the start after that
}

TEST_F(InterruptedRecording, WithoutASampleIsNoRecord)
{
    leave(0, 0, "abcd");
    EXPECT_TRUE(RecordStore(directory.path()).records().isEmpty());
    EXPECT_TRUE(contentOf(directory.filePath("recordings")).isEmpty());
}

TEST_F(InterruptedRecording, AsALoopIsPutInOrder)
{
    leave(4, 12, QByteArray(4, 0) + "efghijklmnop");
    expectRecord("efghijkl");
}

TEST_F(InterruptedRecording, HalfWayToItsOrderIsPutInOrderAgain)
{
    leave(4, 12, QByteArray(4, 0) + "efghijkl");
    writeFile(orderedPath, "efgh");
    expectRecord("efghijkl");
}

TEST_F(InterruptedRecording, GoesOnWhereItsOrderWasLeft)
{
    constexpr int pieceBytes = moveRoomBytes / 2;
    const QByteArray section = QByteArray(pieceBytes, 'a') + QByteArray(pieceBytes, 'b') + QByteArray(pieceBytes, 'c');
    leave(4, 4 + section.size(), QByteArray(4 + pieceBytes, 0) + section.mid(pieceBytes)); // the first piece has gone
    writeFile(orderedPath, section.left(2 * pieceBytes + 4));
    expectRecord(section);
}

TEST_F(InterruptedRecording, ThatIsInOrderAlreadyStaysSo)
{
    leave(4, 12, "efghijkl");
    expectRecord("efghijkl");
}

TEST_F(InterruptedRecording, ThatLacksSamplesIsDamaged)
{
    leave(0, 12, "abcd");
    RecordStore store(directory.path());
    EXPECT_TRUE(store.records().isEmpty());
    ASSERT_EQ(store.refused().size(), 1);
    EXPECT_TRUE(store.refused().first().reason.contains("4 bytes instead of 12")) << store.refused().first().reason.toStdString();
    EXPECT_EQ(readFile(samplesPath), "abcd");
}

} // namespace
