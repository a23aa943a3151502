#include "installation/recorder/recordererror.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace installation::recorder;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class Store : public testing::Test
{
protected:
    Store() { open(); }

    void open()
    {
        store.reset();
        store = std::make_unique<RecordStore>(directory.path());
    }
    void close() { store.reset(); }
    QString add(const char *name, const QByteArray &samples = "abcd")
    {
        return storeRecord(*store, QString::fromUtf8(name), samples);
    }
    QString file(const QString &name) const { return directory.filePath("recordings/" + name); }
    QString catalogue() const { return directory.filePath("catalogue.sqlite"); }
    std::vector<std::string> names()
    {
        std::vector<std::string> names;
        for (const RecordSummary &record : store->records())
            names.push_back(record.name.toStdString());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::vector<std::string> refusedNames() const
    {
        std::vector<std::string> names;
        for (const RefusedFile &refused : store->refused())
            names.push_back(refused.name.toStdString());
        return names;
    }

    QTemporaryDir directory;
    std::unique_ptr<RecordStore> store;
};

TEST_F(Store, IsEmptyWhenNew)
{
    EXPECT_TRUE(store->records().isEmpty());
    EXPECT_TRUE(store->refused().isEmpty());
}

TEST_F(Store, RefusesNothingThatItWritesItself)
{
    writeFile(store->reserve().samplesPath, "abcd");
    EXPECT_THAT(refusedNames(), IsEmpty());
    writeFile(file("foreign.sigmf-data.part"), "abcd");
    EXPECT_THAT(refusedNames(), ElementsAre("foreign.sigmf-data.part"));
}

TEST_F(Store, KeepsSamplesByteForByte)
{
    const QByteArray samples("\0\r\n\xff\x1a\0", 6);
    const QString id = add("bytes", samples);
    EXPECT_EQ(readFile(file(id + ".sigmf-data")), samples);
}

TEST_F(Store, ReadsBackWhatWasStored)
{
    const QString id = add("Sender \xF0\x9F\x93\xBB");
    const Record read = store->record(id);
    const Record expected = fullRecord(QString::fromUtf8("Sender \xF0\x9F\x93\xBB"));
    EXPECT_EQ(read.name, expected.name);
    EXPECT_EQ(read.history, expected.history);
    EXPECT_EQ(read.index, expected.index);
    EXPECT_EQ(store->records().first(), static_cast<const RecordSummary &>(read));
}

TEST_F(Store, ListsANameWithHalfASurrogatePair)
{
    const QString name = QString(QChar(0xD83D)) + "x" + QChar(0) + "y";
    const QString id = add("first");
    store->change(id, [&](Record &record) { record.name = name; });
    EXPECT_EQ(store->records().first().name, name);
    open();
    EXPECT_EQ(store->records().first().name, name);
}

TEST_F(Store, KnowsItsRecordsAfterARestart)
{
    add("one");
    const QString id = add("two");
    store->change(id, [](Record &record) { record.name = "second"; });
    const QVector<RecordSummary> before = store->records();
    open();
    EXPECT_EQ(store->records(), before);
    EXPECT_THAT(names(), ElementsAre("one", "second"));
}

TEST_F(Store, ChangesNothingWhenTheEditThrows)
{
    const QString id = add("kept");
    const auto before = contentOf(directory.filePath("recordings"));
    const auto edit = [](Record &record) {
        record.name = "lost";
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE, "no");
    };
    EXPECT_EQ(kindOf([&] { store->change(id, edit); }), TQ_KORVE::ekINVALID_VALUE);
    EXPECT_EQ(contentOf(directory.filePath("recordings")), before);
    EXPECT_THAT(names(), ElementsAre("kept"));
}

TEST_F(Store, RemovesADeletableRecordWithItsFiles)
{
    const QString id = add("gone");
    add("kept");
    EXPECT_TRUE(store->remove(id));
    EXPECT_THAT(names(), ElementsAre("kept"));
    EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), 2);
    EXPECT_EQ(kindOf([&] { store->record(id); }), TQ_KORVE::ekINVALID_RECORD_ID);
}

TEST_F(Store, KeepsARecordThatIsNotDeletable)
{
    const QString id = add("kept");
    store->change(id, [](Record &record) { record.deletable = false; });
    EXPECT_FALSE(store->remove(id));
    EXPECT_THAT(names(), ElementsAre("kept"));
}

TEST_F(Store, KnowsNoOtherIds)
{
    add("one");
    for (const char *id : {"", ".", "..", "R1", "../lock", "x' OR '1'='1"})
        EXPECT_EQ(kindOf([&] { store->record(id); }), TQ_KORVE::ekINVALID_RECORD_ID) << id;
}

TEST_F(Store, IsOpenedOnce)
{
    EXPECT_EQ(kindOf([&] { RecordStore second(directory.path()); }), TQ_KORVE::ekRECORD_ACCESS_FAILED);
}

TEST_F(Store, TellsItsRoom)
{
    const RecordStore::Room room = store->room();
    EXPECT_GT(room.totalBytes, 0u);
    EXPECT_LE(room.freeBytes, room.totalBytes);
}

TEST_F(Store, RebuildsACatalogueThatIsGone)
{
    add("one");
    add("two");
    const QVector<RecordSummary> before = store->records();
    close();
    ASSERT_TRUE(QFile::remove(catalogue()));
    open();
    EXPECT_EQ(store->records(), before);
}

TEST_F(Store, ReplacesACatalogueThatIsNone)
{
    add("one");
    close();
    writeFile(catalogue(), QByteArray(20000, 'x'));
    open();
    EXPECT_THAT(names(), ElementsAre("one"));
    add("two");
    open();
    EXPECT_THAT(names(), ElementsAre("one", "two"));
}

TEST_F(Store, ReplacesACatalogueThatIsDamagedInside)
{
    for (int i = 0; i < 100; ++i)
        add("many");
    close();
    QByteArray bytes = readFile(catalogue());
    ASSERT_GT(bytes.size(), 8192);
    std::fill(bytes.begin() + 4096, bytes.end(), '\x55');
    writeFile(catalogue(), bytes);
    open();
    EXPECT_EQ(names().size(), 100u);
}

TEST_F(Store, WorksWithoutRoomForACatalogue)
{
    add("one");
    close();
    ASSERT_TRUE(QFile::remove(catalogue()));
    ASSERT_TRUE(QDir(directory.path()).mkpath("catalogue.sqlite/x")); // no file can have this name now
    open();
    add("two");
    EXPECT_THAT(names(), ElementsAre("one", "two"));
}

TEST_F(Store, ForgetsWhatTheCatalogueHasAndTheFilesDoNot)
{
    const QString id = add("gone");
    add("kept");
    close();
    QFile::remove(file(id + ".sigmf-meta"));
    QFile::remove(file(id + ".sigmf-data"));
    open();
    EXPECT_THAT(names(), ElementsAre("kept"));
}

TEST_F(Store, BelievesTheFilesWhenTheyChangedMeanwhile)
{
    const QString id = add("before");
    close();
    writeFile(file(id + ".sigmf-meta"), readFile(file(id + ".sigmf-meta")).replace("before", "after!!"));
    open();
    EXPECT_THAT(names(), ElementsAre("after!!"));
}

TEST_F(Store, AbandonsAReservationWithItsSamples)
{
    const RecordStore::Reservation reservation = store->reserve();
    writeFile(reservation.samplesPath, "half");
    store->abandon(reservation.id);
    EXPECT_THAT(contentOf(directory.filePath("recordings")), IsEmpty());
    Record record = fullRecord("late");
    record.id = reservation.id;
    EXPECT_EQ(kindOf([&] { store->adopt(record); }), TQ_KORVE::ekRECORD_CREATION_FAILED);
}

TEST_F(Store, AdoptsNothingOfAnotherSize)
{
    const RecordStore::Reservation reservation = store->reserve();
    writeFile(reservation.samplesPath, "half");
    Record record = fullRecord("whole");
    record.id = reservation.id;
    EXPECT_EQ(kindOf([&] { store->adopt(record); }), TQ_KORVE::ekRECORD_CORRUPTED);
    store->abandon(reservation.id);
    EXPECT_THAT(contentOf(directory.filePath("recordings")), IsEmpty());
}

TEST_F(Store, KeepsARecordWhenItsChangeFindsNoRoom)
{
    const QString id = add("kept");
    const auto before = contentOf(directory.filePath("recordings"));
    {
        const FullDisk fullDisk(64);
        const auto kind = kindOf([&] { store->change(id, [](Record &record) { record.name = "lost"; }); });
        EXPECT_EQ(kind, TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    }
    EXPECT_EQ(contentOf(directory.filePath("recordings")), before);
    EXPECT_EQ(store->record(id).name, "kept");
}

TEST_F(Store, RefusesAChangeAfterWhichItCouldNotReadTheRecord)
{
    const QString id = add("kept");
    const QString long_(65535, QChar(0x1F)); // six bytes each in JSON
    const auto addLong = [&](Record &record) { record.history.append({quint64(record.history.size()) + 10, long_}); };
    TQ_KORVE::eKorveKind kind = TQ_KORVE::ekIMPLEMENTATION_FAULT;
    const auto append = [&](Record &record) {
        for (int i = 0; i < 100; ++i)
            addLong(record);
    };
    for (int i = 0; i < 2 && kind == TQ_KORVE::ekIMPLEMENTATION_FAULT; ++i)
        try {
            store->change(id, append);
        } catch (const RecorderError &error) {
            kind = error.kind();
        }
    EXPECT_EQ(kind, TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    EXPECT_EQ(store->record(id).history.size(), 102);
    store->update(id, [](Record &record) { record.name = QString(1 << 19, 'x'); }); // a recorder's own has room
}

TEST_F(Store, LeavesTheSamplesOfALoopWithoutRoomForItsMetaData)
{
    const QString id = add("loop", QByteArray(4, 0) + "efgh");
    store->update(id, [](Record &record) { record.status = KORVE_XML::KORVE_RecordData::RECORDING; });
    writeFile(store->orderedPath(id), "efgh");
    const auto before = contentOf(directory.filePath("recordings"));
    const auto putInOrder = [](Record &record) {
        record.status = KORVE_XML::KORVE_RecordData::IDLE;
        record.sizeBytes = 4;
        record.startPosition = 0;
    };
    {
        const FullDisk fullDisk(64);
        EXPECT_EQ(kindOf([&] { store->close(id, putInOrder); }), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    }
    EXPECT_EQ(contentOf(directory.filePath("recordings")), before);
    EXPECT_EQ(kindOf([&] { store->recordInOrder(id); }), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    EXPECT_EQ(kindOf([&] { store->files(id); }), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    store->close(id, putInOrder);
    EXPECT_EQ(store->recordInOrder(id).sizeBytes, 4u);
    EXPECT_EQ(readFile(file(id + ".sigmf-data")), "efgh");
}

TEST_F(Store, RemovesALoopThatIsNotInOrder)
{
    const QString id = add("loop", QByteArray(4, 0) + "efgh");
    store->update(id, [](Record &record) { record.status = KORVE_XML::KORVE_RecordData::RECORDING; });
    writeFile(store->orderedPath(id), "ef");
    EXPECT_TRUE(store->remove(id));
    EXPECT_THAT(contentOf(directory.filePath("recordings")), IsEmpty());
}

struct Interruption {
    const char *name;
    const char *from;
    const char *to;
    bool recordStays;
};

/// What is on the disk when the process ends between two steps. A record "a" is to be found as if one step more had
/// been made, or one less; record "b" beside it as it was.
class InterruptedStore : public Store, public testing::WithParamInterface<Interruption>
{
};

TEST_P(InterruptedStore, IsWholeAfterTheRestart)
{
    const QString id = add("a");
    add("b");
    close();
    ASSERT_TRUE(QFile::rename(file(id + GetParam().from), file(id + GetParam().to)));
    open();
    EXPECT_EQ(names().size(), GetParam().recordStays ? 2u : 1u);
    EXPECT_EQ(names().back(), "b");
    EXPECT_THAT(refusedNames(), IsEmpty());
    EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), GetParam().recordStays ? 4 : 2);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, InterruptedStore,
    testing::Values(Interruption{"MetaDataNotNamedYet", ".sigmf-meta", ".sigmf-meta.part", true},
                    Interruption{"RemovalBegun", ".sigmf-meta", ".sigmf-meta.removed", false}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Store, ClearsAwayWhatWasNeverARecord)
{
    add("b");
    close();
    writeFile(file("R9.sigmf-data.part"), "half of the samp");
    writeFile(file("R8.sigmf-meta.part"), "{");
    open();
    EXPECT_THAT(names(), ElementsAre("b"));
    EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), 2);
}

TEST_F(Store, ClearsAwayAChangeThatWasNotFinished)
{
    const QString id = add("b");
    close();
    writeFile(file(id + ".sigmf-meta.part"), "{\"glo");
    open();
    EXPECT_THAT(names(), ElementsAre("b"));
    EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), 2);
}

struct Damage {
    const char *name;
    std::function<void(const QString &metaPath, const QString &dataPath)> inflict;
    const char *reason;
};

class DamagedStore : public Store, public testing::WithParamInterface<Damage>
{
};

TEST_P(DamagedStore, RefusesTheRecordAndKeepsTheOthers)
{
    const QString id = add("damaged");
    add("sound");
    close();
    GetParam().inflict(file(id + ".sigmf-meta"), file(id + ".sigmf-data"));
    open();
    EXPECT_THAT(names(), ElementsAre("sound"));
    EXPECT_THAT(refusedNames(), ElementsAre((id + ".sigmf-meta").toStdString()));
    EXPECT_TRUE(store->refused().first().reason.contains(GetParam().reason))
        << store->refused().first().reason.toStdString();
    EXPECT_EQ(kindOf([&] { store->record(id); }), TQ_KORVE::ekRECORD_CORRUPTED);
    add("new");
    EXPECT_THAT(names(), ElementsAre("new", "sound"));
}

TEST_P(DamagedStore, NoticesItWhileItRuns)
{
    const QString id = add("damaged");
    add("sound");
    GetParam().inflict(file(id + ".sigmf-meta"), file(id + ".sigmf-data"));
    EXPECT_EQ(kindOf([&] { store->change(id, [](Record &) {}); }), TQ_KORVE::ekRECORD_CORRUPTED);
    EXPECT_THAT(names(), ElementsAre("sound"));
    EXPECT_THAT(refusedNames(), ElementsAre((id + ".sigmf-meta").toStdString()));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedStore,
    testing::Values(
        Damage{"Truncated", [](auto &meta, auto &) { QFile(meta).resize(100); }, "at byte"},
        Damage{"Empty", [](auto &meta, auto &) { QFile(meta).resize(0); }, "at byte"},
        Damage{"NotJson", [](auto &meta, auto &) { writeFile(meta, "RIFF\xff\xfe"); }, "at byte"},
        Damage{"Foreign", [](auto &meta, auto &) { writeFile(meta, R"({"global":{"core:datatype":"ci8"}})"); },
               "korve:record_id"},
        Damage{"Huge", [](auto &meta, auto &) { QFile(meta).resize(RecordFolder::maximumMetaBytes + 1); }, "longer than"},
        Damage{"OfAnotherRecord",
               [](auto &meta, auto &) { writeFile(meta, readFile(meta).replace("\"korve:record_id\": \"R",
                                                                              "\"korve:record_id\": \"Q")); },
               "is the meta data of record"},
        Damage{"SamplesMissing", [](auto &, auto &data) { QFile::remove(data); }, "No such file"},
        Damage{"SamplesCut", [](auto &, auto &data) { QFile(data).resize(3); }, "has 3 bytes instead of 4"},
        Damage{"SamplesAreAPipe",
               [](auto &, auto &data) {
                   QFile::remove(data);
                   mkfifo(QFile::encodeName(data), 0600);
               },
               "no regular file"},
        Damage{"MetaDataIsAPipe",
               [](auto &meta, auto &) {
                   QFile::remove(meta);
                   mkfifo(QFile::encodeName(meta), 0600);
               },
               "no regular file"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Store, RefusesForeignFilesAndLeavesThem)
{
    add("own");
    close();
    writeFile(file("notes.txt"), "do not delete");
    writeFile(file("tape.sigmf-data"), "abcd");
    writeFile(file(".sigmf-meta"), "{}");
    const CapturedTraces traces;
    open();
    EXPECT_THAT(traces.texts(), testing::Contains("refused notes.txt: not a file of a record"));
    EXPECT_THAT(names(), ElementsAre("own"));
    EXPECT_THAT(refusedNames(), ElementsAre(".sigmf-meta", "notes.txt", "tape.sigmf-data"));
    EXPECT_EQ(readFile(file("notes.txt")), "do not delete");
    EXPECT_EQ(readFile(file("tape.sigmf-data")), "abcd");
}

} // namespace
