#include "apps/spectrum/spectrumreader.h"
#include "tests/installation/recorder/receiver.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/servingprocess.h"
#include "tests/installation/recorder/storedrecords.h"
#include "tests/installation/recorder/widetext.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>

#include <sys/timex.h>

using namespace TQ_KORVE;

namespace
{

/// Talks to a recorder in another process that has taken in one SigMF recording and one WAV file.
class Control : public testing::Test
{
protected:
    static void SetUpTestSuite() { orb = new ClientOrb; }
    static void TearDownTestSuite() { delete std::exchange(orb, nullptr); }

    Control()
    {
        writeFile(directory.filePath("air.sigmf-data"), QByteArray(4000, 's'));
        writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta());
        writeFile(directory.filePath("tone.wav"), WavFile{}.bytes());
        start({directory.filePath("air.sigmf-meta"), directory.filePath("tone.wav")});
    }
    void start(const QStringList &files)
    {
        recorder.reset();
        recorder = std::make_unique<ServingProcess>(directory.filePath("state"), files);
        control = IF_Control::_narrow(CORBA::Object_var(orb->object(recorder->reference())));
        seqMETA_DATA_var records = control->listAllRecords();
        for (CORBA::ULong i = 0; i < records->length(); ++i)
            (narrow(records[i].recordName) == "air" ? air : tone) = records[i].recordID;
    }
    template <typename Action> eKorveKind kindOf(Action action)
    {
        try {
            action();
        } catch (const exKorve &failure) {
            EXPECT_STRNE(failure.text, "");
            return failure.kind;
        }
        ADD_FAILURE() << "nothing was raised";
        return ekIMPLEMENTATION_FAULT;
    }

    static inline ClientOrb *orb = nullptr;
    QTemporaryDir directory;
    std::unique_ptr<ServingProcess> recorder;
    IF_Control_var control;
    CORBA::String_var air;
    CORBA::String_var tone;
};

TEST_F(Control, ListsItsRecords)
{
    seqMETA_DATA_var lists[]{control->listAllRecords(), control->listAllRecordsEx2(), control->listAllRecordsEx3()};
    for (seqMETA_DATA_var &records : lists) {
        ASSERT_EQ(records->length(), 2u);
        EXPECT_EQ(narrow(records[0].recordName), "air"); // the earlier one
        EXPECT_EQ(narrow(records[1].recordName), "tone");
    }
}

TEST_F(Control, TellsTheMetaDataOfARecord)
{
    const struMETA_DATA_var record = control->getMetaData(air);
    EXPECT_STREQ(record->recordID, air);
    EXPECT_EQ(record->size, 4000u);
    EXPECT_EQ(record->startTime, 1'700'000'000'250'000u);
    EXPECT_EQ(record->stopTime, 1'700'000'000'250'050u);
    EXPECT_EQ(record->recordStatus, CORBA::ULong(rsIDLE));
    EXPECT_EQ(record->dataFormat, CORBA::ULong(dfRAW));
    EXPECT_EQ(record->recordingLoopSize, 0u);
    EXPECT_EQ(record->startPosition, 0u);
    EXPECT_EQ(record->stopPosition, 4000u);
    EXPECT_EQ(record->dataRate, CORBA::ULong(drVUHF_20M));
    EXPECT_FALSE(record->deletable);
    const struMETA_DATA_var sound = control->getMetaData(tone);
    EXPECT_EQ(sound->dataFormat, CORBA::ULong(dfDIGITAL_AUDIO));
    EXPECT_EQ(sound->dataRate, CORBA::ULong(drVUHF_300k)); // numbered by the device, not by the manager
}

TEST_F(Control, TellsTheDetailsOfARecord)
{
    const struRECORD_DETAILS details = control->getRecordDetails(air);
    EXPECT_EQ(details.size, 4000u);
    EXPECT_EQ(details.tunerFrequency, 98'500'000u);
    EXPECT_EQ(details.sampleRate, 20'000'000u);
    EXPECT_EQ(details.bandwidth, 20'000'000u);
    EXPECT_EQ(details.startPosition, 0u);
    EXPECT_EQ(details.stopPosition, 4000u);
}

TEST_F(Control, HasTwoIndexEntriesPerRecord)
{
    ASSERT_EQ(control->getNrOfIndexEntries(air), 2u);
    seqINDEX_ENTRY_var index = control->getSeqOfIndexEntries(air, 0, 2);
    ASSERT_EQ(index->length(), 2u);
    EXPECT_EQ(index[0].recordOffset, 0u);
    EXPECT_EQ(index[0].timestamp, 1'700'000'000'250'000u);
    EXPECT_EQ(index[1].recordOffset, 4000u);
    EXPECT_EQ(index[1].timestamp, 1'700'000'000'250'050u);
    EXPECT_EQ(index[1].tunerFrequency, 98'500'000u);
    EXPECT_EQ(index[1].bandwidth, 20'000'000u);
}

TEST_F(Control, CutsASectionOfTheIndex)
{
    const auto length = [&](CORBA::ULong first, CORBA::ULong count) {
        return seqINDEX_ENTRY_var(control->getSeqOfIndexEntries(air, first, count))->length();
    };
    EXPECT_EQ(length(1, 1), 1u);
    EXPECT_EQ(length(1, 0xffffffff), 1u);
    EXPECT_EQ(length(2, 1), 0u);
    EXPECT_EQ(length(0xffffffff, 0xffffffff), 0u);
    EXPECT_EQ(length(0, 0), 0u);
}

TEST_F(Control, KeepsACommentBeyondSixteenBits)
{
    const QString comment = QString::fromUtf8("Jörg \xF0\x9F\x93\xBB") + QChar(0xD83D) + QChar(0) + "x";
    control->setRecordComment(air, wide(comment));
    EXPECT_EQ(narrow(struMETA_DATA_var(control->getMetaData(air))->recordName), comment);
    start({});
    EXPECT_EQ(narrow(struMETA_DATA_var(control->getMetaData(air))->recordName), comment);
    EXPECT_EQ(narrow(seqMETA_DATA_var(control->listAllRecords())[0].recordName), comment);
}

TEST_F(Control, RefusesATextWithoutMeasure)
{
    wideText text;
    text.length(65536);
    for (CORBA::ULong i = 0; i < text.length(); ++i)
        text[i] = 'x';
    EXPECT_EQ(kindOf([&] { control->setRecordComment(air, text); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { control->addBookmark(air, 1, text); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { control->addHistory(air, text); }), ekINVALID_VALUE);
}

TEST_F(Control, KeepsBookmarksInOrder)
{
    control->addBookmark(air, 20, wide("later"));
    control->addBookmark(air, 10, wide(QString::fromUtf8("\xF0\x9F\x94\x96")));
    control->addBookmark(air, 18'446'744'073'709'551'615u, wide(""));
    start({});
    seqBookmarks_var bookmarks = control->getBookmarks(air);
    ASSERT_EQ(bookmarks->length(), 3u);
    EXPECT_EQ(bookmarks[0].timestamp, 10u);
    EXPECT_EQ(narrow(bookmarks[0].bookmark), QString::fromUtf8("\xF0\x9F\x94\x96"));
    EXPECT_EQ(narrow(bookmarks[1].bookmark), "later");
    EXPECT_EQ(bookmarks[2].timestamp, 18'446'744'073'709'551'615u);
    EXPECT_EQ(bookmarks[2].bookmark.length(), 0u);
    EXPECT_EQ(seqBookmarks_var(control->getBookmarks(tone))->length(), 0u);
}

TEST_F(Control, HasOneBookmarkAtATime)
{
    control->addBookmark(air, 20, wide("first"));
    EXPECT_EQ(kindOf([&] { control->addBookmark(air, 20, wide("second")); }), ekBOOKMARK_ALREADY_EXISTS);
    seqBookmarks_var bookmarks = control->getBookmarks(air);
    ASSERT_EQ(bookmarks->length(), 1u);
    EXPECT_EQ(narrow(bookmarks[0].bookmark), "first");
}

TEST_F(Control, RemovesABookmarkOnce)
{
    control->addBookmark(air, 20, wide("gone"));
    control->removeBookmark(air, 20);
    EXPECT_EQ(seqBookmarks_var(control->getBookmarks(air))->length(), 0u);
    EXPECT_EQ(kindOf([&] { control->removeBookmark(air, 20); }), ekINVALID_VALUE);
}

TEST_F(Control, WritesHistoryWithTheTime)
{
    const CORBA::ULongLong before = control->getSystemTime();
    control->addHistory(air, wide("one"));
    control->addHistory(air, wide("two"));
    seqHistory_var history = control->getHistory(air);
    ASSERT_EQ(history->length(), 2u);
    EXPECT_EQ(narrow(history[0].historyEntry), "one");
    EXPECT_EQ(narrow(history[1].historyEntry), "two");
    EXPECT_GE(history[0].timestamp, before);
    EXPECT_GT(history[1].timestamp, history[0].timestamp);
    EXPECT_LE(history[1].timestamp, control->getSystemTime());
    control->removeHistoryEntry(air, history[0].timestamp);
    EXPECT_EQ(narrow(seqHistory_var(control->getHistory(air))[0].historyEntry), "two");
    EXPECT_EQ(kindOf([&] { control->removeHistoryEntry(air, 7); }), ekINVALID_VALUE);
}

TEST_F(Control, RemovesOnlyWhatIsDeletable)
{
    EXPECT_FALSE(control->removeRecord(air));
    control->setDeletableFlagOfRecord(air);
    EXPECT_TRUE(struMETA_DATA_var(control->getMetaData(air))->deletable);
    control->clearDeletableFlagOfRecord(air);
    EXPECT_FALSE(control->removeRecord(air));
    control->setDeletableFlagOfRecord(air);
    EXPECT_TRUE(control->removeRecord(air));
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 1u);
    EXPECT_EQ(kindOf([&] { control->removeRecord(air); }), ekINVALID_RECORD_ID);
}

struct RecordOperation {
    const char *name;
    std::function<void(IF_Control_ptr, const char *id)> call;
};

/// Each operation that names a record.
class ControlOfARecord : public Control, public testing::WithParamInterface<RecordOperation>
{
};

TEST_P(ControlOfARecord, KnowsNoOtherIds)
{
    for (const char *id : {"", "R0", "../lock", "\xff\xfe"})
        EXPECT_EQ(kindOf([&] { GetParam().call(control, id); }), ekINVALID_RECORD_ID) << id;
}

TEST_P(ControlOfARecord, SaysThatTheRecordIsCorrupted)
{
    ASSERT_TRUE(QFile::remove(directory.filePath("state/recordings/" + QString(air.in()) + ".sigmf-data")));
    EXPECT_EQ(kindOf([&] { GetParam().call(control, air); }), ekRECORD_CORRUPTED);
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, ControlOfARecord,
    testing::Values(
        RecordOperation{"getMetaData", [](auto control, auto id) { struMETA_DATA_var(control->getMetaData(id)); }},
        RecordOperation{"getRecordDetails", [](auto control, auto id) { control->getRecordDetails(id); }},
        RecordOperation{"copyRecord",
                        [](auto control, auto id) {
                            CORBA::String_var(control->copyRecord(id, seqFILE_PART(),
                                                                  wide("x")));
                        }},
        RecordOperation{"setRecordComment", [](auto control, auto id) { control->setRecordComment(id, wide("x")); }},
        RecordOperation{"setDeletable", [](auto control, auto id) { control->setDeletableFlagOfRecord(id); }},
        RecordOperation{"clearDeletable", [](auto control, auto id) { control->clearDeletableFlagOfRecord(id); }},
        RecordOperation{"removeRecord", [](auto control, auto id) { control->removeRecord(id); }},
        RecordOperation{"getNrOfIndexEntries", [](auto control, auto id) { control->getNrOfIndexEntries(id); }},
        RecordOperation{"getSeqOfIndexEntries",
                        [](auto control, auto id) { seqINDEX_ENTRY_var(control->getSeqOfIndexEntries(id, 0, 1)); }},
        RecordOperation{"addBookmark", [](auto control, auto id) { control->addBookmark(id, 1, wide("x")); }},
        RecordOperation{"removeBookmark", [](auto control, auto id) { control->removeBookmark(id, 1); }},
        RecordOperation{"getOverviewSpectrum",
                        [](auto control, auto id) {
                            seqOctet_var(control->getOverviewSpectrum(id, 0, 4000, 1, 2, wmHanning));
                        }},
        RecordOperation{"getOverviewSpectrumStreamed",
                        [](auto control, auto id) {
                            control->getOverviewSpectrumStreamed(id, 0, 4000, 1, 2, wmHanning, Receiver::address, 9);
                        }},
        RecordOperation{"getBookmarks", [](auto control, auto id) { seqBookmarks_var(control->getBookmarks(id)); }},
        RecordOperation{"addHistory", [](auto control, auto id) { control->addHistory(id, wide("x")); }},
        RecordOperation{"removeHistoryEntry", [](auto control, auto id) { control->removeHistoryEntry(id, 1); }},
        RecordOperation{"getHistory", [](auto control, auto id) { seqHistory_var(control->getHistory(id)); }}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Control, ComesUpBesideAFileThatIsRefused)
{
    writeFile(directory.filePath("state/recordings/notes.txt"), "do not delete");
    start({});
    EXPECT_EQ(recorder->refused(), QStringList{"notes.txt"});
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 2u);
}

TEST_F(Control, TellsTheStateOfItsStorage)
{
    const struMASS_STORE_STATUS_var status = control->getMassStoreStatus();
    EXPECT_GT(status->totalSize, 0u);
    EXPECT_LE(status->freeSize, status->totalSize);
    ASSERT_EQ(status->units.length(), 1u);
    EXPECT_STREQ(status->units[0].unitName, directory.filePath("state/recordings").toUtf8());
    EXPECT_EQ(status->units[0].totalSize, status->totalSize);
}

TEST_F(Control, TellsItsTimeAndVersion)
{
    const quint64 before = QDateTime::currentMSecsSinceEpoch() * 1000ull;
    const quint64 time = control->getSystemTime();
    EXPECT_GE(time, before);
    EXPECT_LE(time, QDateTime::currentMSecsSinceEpoch() * 1000ull + 999);
    timex host{};
    const bool isHostSynchronized = ::adjtimex(&host) != TIME_ERROR && (host.status & STA_UNSYNC) == 0;
    EXPECT_EQ(control->isSynchronizedByNTP(), isHostSynchronized);
    const CORBA::String_var version = control->getFirmwareVersion();
    EXPECT_STREQ(version, "KRV#R100#0.1_0.1");
}

TEST_F(Control, CopiesSectionsOfARecord)
{
    seqFILE_PART parts;
    parts.length(2);
    parts[0] = {400, 800};
    parts[1] = {1200, 1240};
    const CORBA::String_var id = control->copyRecord(air, parts, wide("copy"));
    const CORBA::String_var other = control->copyRecordEx(air, parts, wide("other"), TQ_KORVE_IT::IF_Korve_IT::_nil());
    EXPECT_STRNE(id, other);
    const struMETA_DATA_var copy = control->getMetaData(id);
    EXPECT_EQ(narrow(copy->recordName), "copy");
    EXPECT_EQ(copy->size, 440u);
    EXPECT_TRUE(copy->deletable);
    EXPECT_EQ(copy->startTime, 1'700'000'000'250'005u);
    parts[1].lastPosition = 4004;
    EXPECT_EQ(kindOf([&] { CORBA::String_var(control->copyRecord(air, parts, wide("x"))); }),
              ekCOPY_SEQUENCE_INCONSISTENT);
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 4u);
}

TEST_F(Control, AnswersWithASpectrumAndStreamsTheSame)
{
    const seqOctet_var octets = control->getOverviewSpectrum(air, 400, 4000, 3, 128, wmBlackman);
    const QByteArray answered(reinterpret_cast<const char *>(octets->get_buffer()), int(octets->length()));
    Receiver receiver;
    control->getOverviewSpectrumStreamed(air, 400, 4000, 3, 128, wmBlackman, Receiver::address, receiver.port());
    EXPECT_EQ(receiver.takeAll(), answered);
    apps::SpectrumReader reader;
    reader.add(answered);
    const apps::SpectrumHead head{128, 4, 128, 3, 400, 4000, 20'000'000, 98'500'000};
    EXPECT_EQ(reader.head(), head);
    while (const auto line = reader.next())
        EXPECT_EQ(line->levels.size(), 128);
    reader.requireComplete();
}

TEST_F(Control, RefusesASpectrumWithAReason)
{
    const auto stream = [&](CORBA::ULong fftSize, CORBA::UShort port) {
        control->getOverviewSpectrumStreamed(air, 0, 4000, 1, fftSize, wmKaiser, Receiver::address, port);
    };
    EXPECT_EQ(kindOf([&] { stream(1, 9); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { stream(128, deafPort()); }), ekCONNECTION_FAILURE);
    EXPECT_EQ(kindOf([&] { seqOctet_var(control->getOverviewSpectrum(air, 0, 4001, 1, 128, wmHamming)); }),
              ekINVALID_VALUE);
}

TEST_F(Control, KeepsTheTimeThatIsSet)
{
    const CORBA::ULongLong noon = 1'000'000'000'000'000;
    const qint64 beginMs = QDateTime::currentMSecsSinceEpoch();
    const auto latest = [&] { return noon + (QDateTime::currentMSecsSinceEpoch() - beginMs + 1) * 1000; };
    EXPECT_GE(control->setSystemTime(noon), noon);
    start({});
    EXPECT_GE(control->getSystemTime(), noon);
    EXPECT_LE(control->getSystemTime(), latest());
    EXPECT_FALSE(control->isSynchronizedByNTP());
    control->addHistory(air, wide("by the clock of the device"));
    EXPECT_LE(seqHistory_var(control->getHistory(air))[0].timestamp, latest());
    EXPECT_EQ(kindOf([&] { control->setSystemTime(1ull << 63); }), ekINVALID_VALUE);
}

TEST_F(Control, SaysWhatItDoesNotOffer)
{
    EXPECT_EQ(kindOf([&] { control->getPDWcount(air); }), ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    EXPECT_THROW(control->eraseAllRecords(), CORBA::NO_IMPLEMENT);
    EXPECT_THROW(control->shutdown(), CORBA::NO_IMPLEMENT);
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 2u);
}

} // namespace
