#include "installation/recorder/deviceclock.h"
#include "installation/recorder/recordcopier.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordimport.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QFile>

#include <atomic>
#include <future>

using namespace installation::recorder;

namespace
{

constexpr int sourceBytes = 3 << 20;

/// A recorder with one record of three mebibytes, which are copied.
class RecordCopy : public testing::Test
{
protected:
    RecordCopy()
    {
        for (int i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<char>(i * 2654435761u >> 24);
        writeFile(directory.filePath("air.sigmf-data"), samples);
        writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta());
        source = importFile(*store, directory.filePath("air.sigmf-meta"));
    }
    QString dataPath(const QString &id) const { return directory.filePath("state/recordings/" + id + ".sigmf-data"); }
    Record recordOf(const QString &id) const
    {
        return store->ask([id](RecordStore &records) { return records.record(id); });
    }
    TQ_KORVE::eKorveKind kindOf(RecordCopier &copier, const QVector<FilePart> &parts, const QString &id)
    {
        return ::kindOf([&] { copier.copy(id, parts, "copy"); });
    }
    void expectOnlyTheSource() const
    {
        EXPECT_EQ(store->ask([](RecordStore &records) { return records.records().size(); }), 1);
        EXPECT_EQ(contentOf(directory.filePath("state/recordings")).size(), 2);
    }

    QTemporaryDir directory;
    QByteArray samples{sourceBytes, 0};
    const std::shared_ptr<StoreThread> store = std::make_shared<StoreThread>(directory.filePath("state"));
    DeviceClock clock{directory.filePath("clock")};
    QString source;
    const QVector<FilePart> all{{0, sourceBytes}};
};

TEST_F(RecordCopy, HasTheSamplesOfItsSections)
{
    RecordCopier copier(store, clock);
    const QString id = copier.copy(source, {{4, 400}, {1 << 20, (2 << 20) + 40}}, "part");
    EXPECT_EQ(readFile(dataPath(id)), samples.mid(4, 396) + samples.mid(1 << 20, (1 << 20) + 40));
    const Record copy = recordOf(id);
    EXPECT_EQ(copy.name, "part");
    EXPECT_TRUE(copy.deletable);
    EXPECT_EQ(copy.startUs, recordOf(source).startUs); // the fifth of a microsecond
    EXPECT_EQ(copy.index.size(), 3);
    EXPECT_EQ(readFile(dataPath(source)), samples);
}

TEST_F(RecordCopy, SaysWhatItWasCopiedFrom)
{
    clock.set(1'000'000'000'000);
    RecordCopier copier(store, clock);
    const Record copy = recordOf(copier.copy(source, {{0, 4}, {8, 12}}, ""));
    ASSERT_EQ(copy.history.size(), 1);
    EXPECT_EQ(copy.history.first().text, "Copied from record " + source + ", bytes 0-4, 8-12");
    EXPECT_EQ(copy.history.first().timestampUs / 60'000'000, 1'000'000'000'000 / 60'000'000);
}

TEST_F(RecordCopy, NamesAFewOfManySections)
{
    QVector<FilePart> parts;
    for (quint64 i = 0; i < 1000; ++i)
        parts.append({8 * i, 8 * i + 4});
    RecordCopier copier(store, clock);
    const Record copy = recordOf(copier.copy(source, parts, ""));
    EXPECT_EQ(copy.sizeBytes, 4000u);
    EXPECT_TRUE(copy.history.first().text.endsWith(", 56-60, 992 more"));
}

TEST_F(RecordCopy, CanBeCopiedAndTakenInElsewhere)
{
    RecordCopier copier(store, clock);
    const QString first = copier.copy(source, {{4000, 8000}}, "first");
    const QString second = copier.copy(first, {{400, 800}}, "second");
    EXPECT_EQ(readFile(dataPath(second)), samples.mid(4400, 400));
    const QString again = importFile(*store, dataPath(second));
    EXPECT_EQ(recordOf(again).startUs, recordOf(second).startUs);
    EXPECT_EQ(recordOf(again).name, "second");
}

TEST_F(RecordCopy, RefusesSectionsThatAreNone)
{
    RecordCopier copier(store, clock);
    EXPECT_EQ(kindOf(copier, {{0, sourceBytes + 4}}, source), TQ_KORVE::ekCOPY_SEQUENCE_INCONSISTENT);
    EXPECT_EQ(kindOf(copier, all, "R0"), TQ_KORVE::ekINVALID_RECORD_ID);
    expectOnlyTheSource();
}

TEST_F(RecordCopy, LeavesNothingWhenTheDiskGetsFull)
{
    RecordCopier copier(store, clock);
    {
        const FullDisk fullDisk(1 << 20);
        EXPECT_EQ(kindOf(copier, all, source), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    }
    expectOnlyTheSource();
}

TEST_F(RecordCopy, LeavesNothingOfASourceThatShrinks)
{
    const auto shrink = [this](const Record &, const QString &) {
        QFile(dataPath(source)).resize(4);
        return nullptr;
    };
    RecordCopier copier(store, clock, shrink);
    EXPECT_EQ(kindOf(copier, all, source), TQ_KORVE::ekCOPY_FAULT);
    EXPECT_EQ(contentOf(directory.filePath("state/recordings")).size(), 2);
}

TEST_F(RecordCopy, ClaimsBothRecordsUntilItIsThere)
{
    QStringList told;
    const auto claim = [&](const Record &record, const QString &id) {
        told += {"claimed", record.id, id};
        return std::shared_ptr<void>(nullptr, [&](void *) { told += "released"; });
    };
    const auto ended = [&](const QString &id, const QString &failure) {
        EXPECT_EQ(recordOf(id).id, id); // whoever hears of it finds it
        told += {"ended", id, failure};
    };
    RecordCopier copier(store, clock, claim);
    const QString id = copier.copy(source, all, "", ended);
    EXPECT_EQ(told, (QStringList{"claimed", source, id, "released", "ended", id, ""}));
}

TEST_F(RecordCopy, MayBeRefusedByWhoIsAsked)
{
    const auto refuse = [](const Record &, const QString &) -> std::shared_ptr<void> {
        throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, "it is being recorded");
    };
    RecordCopier copier(store, clock, refuse);
    EXPECT_EQ(kindOf(copier, all, source), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    expectOnlyTheSource();
}

/// Its caller waits for none of its copies, and they end when they are let.
class LongRecordCopy : public RecordCopy
{
protected:
    QString copy(const QVector<FilePart> &parts) { return copier.copy(source, parts, QString(), ended); }
    /// Makes the source one of 4 GiB, most of it a hole that takes no room.
    void enlargeSource()
    {
        const quint64 hugeBytes = quint64(4) << 30;
        const RecordStore::Reservation place = store->ask([](RecordStore &records) { return records.reserve(); });
        writeFile(place.samplesPath, samples);
        ASSERT_TRUE(QFile(place.samplesPath).resize(static_cast<qint64>(hugeBytes)));
        Record record = recordOf(source);
        record.id = place.id;
        record.sizeBytes = hugeBytes;
        store->ask([record](RecordStore &records) { records.adopt(record); });
        source = place.id;
    }

    std::promise<void> mayEnd;
    std::promise<QString> failure;
    std::atomic<bool> isTold = false;
    RecordCopier::Ended ended = [this, end = mayEnd.get_future().share()](const QString &, const QString &text) {
        end.wait();
        if (!isTold.exchange(true))
            failure.set_value(text);
    };
    RecordCopier copier{store, clock, {}, {std::chrono::milliseconds(0)}};
};

TEST_F(LongRecordCopy, IsAnsweredBeforeItsEnd)
{
    const QString id = copy(all);
    mayEnd.set_value();
    EXPECT_EQ(failure.get_future().get(), "");
    EXPECT_EQ(readFile(dataPath(id)), samples);
}

TEST_F(LongRecordCopy, HasAFewPlaces)
{
    for (unsigned i = 0; i < RecordCopier::maximumCopies; ++i)
        copy({{0, 4}});
    EXPECT_EQ(kindOf(copier, {{0, 4}}, source), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    mayEnd.set_value();
}

TEST_F(LongRecordCopy, OutlivesTheRemovalOfItsSource)
{
    store->ask([this](RecordStore &records) { records.change(source, [](Record &record) { record.deletable = true; }); });
    const QString id = copy(all);
    EXPECT_TRUE(store->ask([this](RecordStore &records) { return records.remove(source); }));
    mayEnd.set_value();
    EXPECT_EQ(failure.get_future().get(), "");
    EXPECT_EQ(readFile(dataPath(id)), samples);
}

TEST_F(LongRecordCopy, LeavesNothingWhenTheRecorderEnds)
{
    enlargeSource();
    const QString id = copy({{0, quint64(4) << 30}});
    mayEnd.set_value();
    copier.stop();
    EXPECT_EQ(failure.get_future().get(), "cancelled");
    EXPECT_EQ(contentOf(directory.filePath("state/recordings")).keys().filter(id).size(), 0);
}

} // namespace
