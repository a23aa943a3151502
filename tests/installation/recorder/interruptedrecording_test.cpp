#include "installation/recorder/file.h"
#include "installation/recorder/interruptedloops.h"
#include "installation/recorder/looporder.h"
#include "installation/recorder/recordingformat.h"
#include "installation/recorder/recordstore.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <atomic>
#include <future>

using namespace installation::recorder;
using KORVE_XML::KORVE_RecordData;

namespace
{

/// The next start of the recorder, as far as it sees to what was interrupted.
class Started
{
public:
    explicit Started(const QString &path) : store(std::make_shared<StoreThread>(path)), loops(store, *activities) {}
    ~Started() { end(); }

    /// Leaves the loops as they are.
    void end() { loops.stop(); }

    void waitUntilIdle() const
    {
        const QDeadlineTimer end(60'000);
        while (busyRecords > 0 && !end.hasExpired())
            std::this_thread::yield();
        ASSERT_EQ(busyRecords, 0);
    }
    QVector<RecordSummary> records() const
    {
        return store->ask([](RecordStore &records) { return records.records(); });
    }
    QVector<RefusedFile> refused() const
    {
        return store->ask([](RecordStore &records) { return records.refused(); });
    }

    const std::shared_ptr<StoreThread> store;
    const std::shared_ptr<Activities> activities = std::make_shared<Activities>(
        [this](const QString &, const QString &, RecordStatus status) {
            busyRecords += status == KORVE_RecordData::IDLE ? -1 : 1;
        });

private:
    std::atomic<int> busyRecords = 0;
    InterruptedLoops loops;
};

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
        Started started(directory.path());
        started.waitUntilIdle();
        EXPECT_TRUE(started.refused().isEmpty());
        ASSERT_EQ(started.records().size(), 1);
        const Record record = started.store->ask([id = id](RecordStore &records) { return records.record(id); });
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

TEST_F(InterruptedRecording, AsALoopKeepsNobodyWaitingAtTheStart)
{
    leave(4, 12, QByteArray(4, 0) + "efghijklmnop");
    StoreThread store(directory.path()); // which answers
    const auto records = store.ask([](RecordStore &records) { return records.records(); });
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.first().status, KORVE_RecordData::RECORDING);
    EXPECT_EQ(readFile(samplesPath).right(12), "efghijklmnop");
    EXPECT_EQ(kindOf([&] { store.ask([id = id](RecordStore &records) { records.recordInOrder(id); }); }),
              TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
}

TEST_F(InterruptedRecording, AsALoopIsBusyUntilItIsInOrder)
{
    leave(4, 12, QByteArray(4, 0) + "efghijklmnop");
    const auto store = std::make_shared<StoreThread>(directory.path());
    const auto activities = std::make_shared<Activities>();
    std::promise<void> gate;
    store->ask([opened = gate.get_future().share()](RecordStore &records) { // it stands still when the loop is closed
        records.observe([opened](RecordStore::Event, const QString &, const QString &) { opened.wait(); });
    });
    const RecordSummary left = store->ask([](RecordStore &records) { return records.records().first(); });
    InterruptedLoops loops(store, *activities);
    EXPECT_EQ(activities->statusOf(left), KORVE_RecordData::INDEXING);
    EXPECT_EQ(kindOf([&] { activities->requireNone(id); }), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    gate.set_value();
    loops.stop();
}

TEST_F(InterruptedRecording, ThatCannotBePutInOrderIsDamaged)
{
    leave(4, 12, QByteArray(4, 0) + "efghijklmnop");
    QDir().mkpath(orderedPath); // where the samples would go
    const Started started(directory.path());
    started.waitUntilIdle();
    EXPECT_TRUE(started.records().isEmpty());
    ASSERT_FALSE(started.refused().isEmpty());
    EXPECT_EQ(readFile(samplesPath).right(12), "efghijklmnop");
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

TEST_F(InterruptedRecording, WhoseOrderTheEndCancelsIsPutInOrderByTheNextStart)
{
    const QByteArray section(8 * moveRoomBytes, 'a'); // longer than what is moved before the end is seen
    leave(4, 4 + section.size(), QByteArray(4, 0) + section);
    {
        Started started(directory.path());
        started.end();
        EXPECT_TRUE(started.refused().isEmpty());
    }
    expectRecord(section);
}

TEST_F(InterruptedRecording, ThatIsGivenUpHalfWayNamesTheFileWithTheRest)
{
    leave(4, 12, QByteArray(4, 0) + "efghijkl");
    writeFile(orderedPath, "efgh");
    RecordStore store(directory.path());
    EXPECT_TRUE(store.refused().isEmpty());
    store.giveUp(id, QStringLiteral("no room"));
    ASSERT_EQ(store.refused().size(), 2);
    EXPECT_EQ(store.refused().first().name, id + ".sigmf-data.part");
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
