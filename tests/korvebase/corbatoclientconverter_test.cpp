#include "korvebase/corbatoclientconverter.h"

#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using namespace KorveCommon::CorbaToClientConverter;
using KORVE_XML::BookmarkEntry;
using KORVE_XML::HistoryEntry;
using KORVE_XML::IndexEntry;
using KORVE_XML::KORVE_RecordData;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TQ_KRV::struRECORD_DATA received()
{
    TQ_KRV::struRECORD_DATA data;
    data.recordID = "R\xC3\xBC"
                    "1";
    data.recordName = L"Süd \xD83D\xDCE1";
    data.size = 101;
    data.startTime = 102;
    data.stopTime = 103;
    data.recordStatus = TQ_KRV::rsACTIVE;
    data.dataFormat = TQ_KRV::dfIQBW;
    data.recordingLoopSize = 104;
    data.stopPosition = 105;
    data.startPosition = 106;
    data.dataRate = TQ_KRV::drVUHF_1M;
    data.deletable = true;
    data.indexEntries.length(2);
    data.indexEntries[0] = {201, 202, 203, 204, 205};
    data.indexEntries[1] = {211, 212, 213, 214, 4294967295};
    data.bookmarks.length(1);
    data.bookmarks[0].timestamp = 301;
    data.bookmarks[0].bookmark = L"Lesezeichen ä";
    data.history.length(1);
    data.history[0].timestamp = 401;
    data.history[0].historyEntry = L"kopiert";
    return data;
}

KORVE_RecordData recordOf(const TQ_KRV::struRECORD_DATA &data)
{
    KORVE_RecordData record;
    fillRecordData(record, data);
    return record;
}

TEST(ReceivedRecord, HasEveryMember)
{
    const KORVE_RecordData record = recordOf(received());
    EXPECT_EQ(record.GetRecordID(), QString::fromUtf8("Rü1")) << "identifiers are read as UTF-8";
    EXPECT_EQ(record.GetRecordName(), QString::fromUtf8("Süd \xF0\x9F\x93\xA1"));
    EXPECT_EQ(record.GetSize(), 101u);
    EXPECT_EQ(record.GetStartTime(), 102u);
    EXPECT_EQ(record.GetStopTime(), 103u);
    EXPECT_EQ(record.GetRecordStatus(), KORVE_RecordData::ACTIVE);
    EXPECT_EQ(record.GetDataFormat(), KORVE_RecordData::IQBW);
    EXPECT_EQ(record.GetRecordingLoopSize(), 104u);
    EXPECT_EQ(record.GetStopPosition(), 105u);
    EXPECT_EQ(record.GetStartPosition(), 106u);
    EXPECT_EQ(record.GetDataRate(), KORVE_RecordData::VUHF_1M);
    EXPECT_TRUE(record.GetDeletable());
    EXPECT_TRUE(record.HasData());
}

TEST(ReceivedRecord, HasItsEntriesInOrder)
{
    const KORVE_RecordData record = recordOf(received());
    ASSERT_THAT(record.GetIndexEntry(), SizeIs(2));
    const IndexEntry first = record.GetIndexEntry().at(0);
    EXPECT_EQ(first.GetRecordOffset(), 201u);
    EXPECT_EQ(first.GetTimestamp(), 202u);
    EXPECT_EQ(first.GetTunerFrequency(), 203u);
    EXPECT_EQ(first.GetSampleRate(), 204u);
    EXPECT_EQ(first.GetBandwidth(), 205u);
    EXPECT_EQ(record.GetIndexEntry().at(1).GetBandwidth(), 4294967295u);
    ASSERT_THAT(record.GetBookmarkEntry(), SizeIs(1));
    EXPECT_EQ(record.GetBookmarkEntry().at(0).GetTimestamp(), 301u);
    EXPECT_EQ(record.GetBookmarkEntry().at(0).GetBookmark(), QString::fromUtf8("Lesezeichen ä"));
    ASSERT_THAT(record.GetHistoryEntry(), SizeIs(1));
    EXPECT_EQ(record.GetHistoryEntry().at(0).GetTimestamp(), 401u);
    EXPECT_EQ(record.GetHistoryEntry().at(0).GetHistoryEntry(), "kopiert");
}

TEST(ReceivedRecord, AppendsToTheEntriesThatTheRecordHas)
{
    KORVE_RecordData record = recordOf(received());
    fillRecordData(record, received());
    EXPECT_THAT(std::as_const(record).GetIndexEntry(), SizeIs(4));
    EXPECT_THAT(std::as_const(record).GetBookmarkEntry(), SizeIs(2));
    EXPECT_THAT(std::as_const(record).GetHistoryEntry(), SizeIs(2));
}

TEST(EmptyReceivedRecord, SetsItsTextsButNoLists)
{
    TQ_KRV::struRECORD_DATA data = received();
    data.recordID = "";
    data.recordName = L"";
    data.indexEntries.length(0);
    data.bookmarks.length(0);
    data.history.length(0);
    const KORVE_RecordData record = recordOf(data);
    EXPECT_TRUE(record.IsRecordIDSet());
    EXPECT_TRUE(record.IsRecordNameSet());
    EXPECT_TRUE(record.HasData()) << "the texts are empty, not null";
    EXPECT_FALSE(record.IsIndexEntrySet());
    EXPECT_FALSE(record.IsBookmarkEntrySet());
    EXPECT_FALSE(record.IsHistoryEntrySet());
}

TEST(ReceivedEntries, AreFilledOneByOne)
{
    BookmarkEntry bookmark;
    fillBookmarkEntry(bookmark, received().bookmarks[0]);
    EXPECT_EQ(bookmark.GetTimestamp(), 301u);
    EXPECT_EQ(bookmark.GetBookmark(), QString::fromUtf8("Lesezeichen ä"));
    HistoryEntry history;
    fillHistoryEntry(history, received().history[0]);
    EXPECT_EQ(history.GetTimestamp(), 401u);
    EXPECT_EQ(history.GetHistoryEntry(), "kopiert");
}

TEST(ConvertRecords, TellsWhetherThereAreAnyAfterwards)
{
    QVector<KORVE_RecordData> records;
    EXPECT_FALSE(convertRecords(TQ_KRV::seqRECORD_DATA(), records));
    EXPECT_THAT(records, IsEmpty());
    records.append(KORVE_RecordData());
    EXPECT_TRUE(convertRecords(TQ_KRV::seqRECORD_DATA(), records)) << "one from before counts";
    EXPECT_THAT(records, SizeIs(1));
}

TEST(ConvertRecords, AppendsInOrder)
{
    TQ_KRV::seqRECORD_DATA sequence;
    sequence.length(2);
    sequence[0] = received();
    sequence[1] = received();
    sequence[1].recordID = "second";
    QVector<KORVE_RecordData> records{KORVE_RecordData()};
    EXPECT_TRUE(convertRecords(sequence, records));
    ASSERT_THAT(records, SizeIs(3));
    EXPECT_EQ(records.at(1).GetRecordID(), QString::fromUtf8("Rü1"));
    EXPECT_EQ(records.at(2).GetRecordID(), "second");
}

TEST(ConvertRecords, ClearsAnEntryThatItMayTake)
{
    TQ_KRV::seqRECORD_DATA sequence;
    sequence.length(2);
    sequence[0] = received();
    sequence[1] = received();
    QVector<KORVE_RecordData> records;
    EXPECT_TRUE(convertRecords(std::move(sequence), records));
    EXPECT_EQ(records, (QVector{recordOf(received()), recordOf(received())}));
    ASSERT_EQ(sequence.length(), 2u);
    EXPECT_STREQ(sequence[1].recordID, "");
    EXPECT_EQ(sequence[1].bookmarks.length(), 0u);
}

TEST(SentRecord, HasEveryMember)
{
    const TQ_KRV::struRECORD_DATA_var data = toCorbaRecordData(recordOf(received()));
    EXPECT_STREQ(data->recordID, "R\xFC"
                                 "1")
        << "identifiers are sent as Latin-1";
    EXPECT_EQ(std::wstring(data->recordName), L"Süd \xD83D\xDCE1");
    EXPECT_EQ(data->size, 101u);
    EXPECT_EQ(data->startTime, 102u);
    EXPECT_EQ(data->stopTime, 103u);
    EXPECT_EQ(data->recordStatus, TQ_KRV::rsACTIVE);
    EXPECT_EQ(data->dataFormat, TQ_KRV::dfIQBW);
    EXPECT_EQ(data->recordingLoopSize, 104u);
    EXPECT_EQ(data->stopPosition, 105u);
    EXPECT_EQ(data->startPosition, 106u);
    EXPECT_EQ(data->dataRate, TQ_KRV::drVUHF_1M);
    EXPECT_TRUE(data->deletable);
}

TEST(SentRecord, HasItsEntriesInOrder)
{
    const TQ_KRV::struRECORD_DATA_var data = toCorbaRecordData(recordOf(received()));
    ASSERT_EQ(data->indexEntries.length(), 2u);
    EXPECT_EQ(data->indexEntries[0].recordOffset, 201u);
    EXPECT_EQ(data->indexEntries[0].timestamp, 202u);
    EXPECT_EQ(data->indexEntries[0].tunerFrequency, 203u);
    EXPECT_EQ(data->indexEntries[0].sampleRate, 204u);
    EXPECT_EQ(data->indexEntries[0].bandwidth, 205u);
    EXPECT_EQ(data->indexEntries[1].recordOffset, 211u);
    ASSERT_EQ(data->bookmarks.length(), 1u);
    EXPECT_EQ(data->bookmarks[0].timestamp, 301u);
    EXPECT_EQ(std::wstring(data->bookmarks[0].bookmark), L"Lesezeichen ä");
    ASSERT_EQ(data->history.length(), 1u);
    EXPECT_EQ(data->history[0].timestamp, 401u);
    EXPECT_EQ(std::wstring(data->history[0].historyEntry), L"kopiert");
}

TEST(SentRecord, LeavesTheRecordAsItWas)
{
    KORVE_RecordData record = recordOf(received());
    record.ResetBookmarkEntry();
    const TQ_KRV::struRECORD_DATA_var data = toCorbaRecordData(record);
    EXPECT_FALSE(record.IsBookmarkEntrySet());
}

TEST(SentRecord, CutsRatesAndBandwidthsTo32Bits)
{
    IndexEntry entry;
    entry.SetRecordOffset(std::numeric_limits<quint64>::max());
    entry.SetTimestamp(0);
    entry.SetSampleRate(0x1'0000'0007);
    entry.SetBandwidth(0x2'0000'0009);
    KORVE_RecordData record = recordOf(received());
    record.SetIndexEntry({entry});
    const TQ_KRV::struRECORD_DATA_var data = toCorbaRecordData(record);
    EXPECT_EQ(data->indexEntries[0].recordOffset, std::numeric_limits<quint64>::max());
    EXPECT_EQ(data->indexEntries[0].sampleRate, 7u);
    EXPECT_EQ(data->indexEntries[0].bandwidth, 9u);
}

TEST(SentBookmark, HasTimeAndText)
{
    BookmarkEntry entry;
    entry.SetTimestamp(301);
    TQ_KRV::struBookmarkEntry data;
    fillCorbaBookmarkEntry(data, entry);
    EXPECT_EQ(data.timestamp, 301u);
    EXPECT_EQ(std::wstring(data.bookmark), L"") << "a text that was never set";
    entry.SetBookmark(QString::fromUtf8("ä"));
    fillCorbaBookmarkEntry(data, entry);
    EXPECT_EQ(std::wstring(data.bookmark), L"ä");
}

TEST(MissingRecord, IsSentWithEmptyTextsAndFallbacks)
{
    CapturedTraces traces;
    const TQ_KRV::struRECORD_DATA_var data = dummyCorbaRecordData();
    EXPECT_THAT(
        traces.take(),
        ElementsAre(
            "CorbaToClientConverter::convertRecordStatusFromXml : invalid record status -1. Will be using Idle.",
            "CorbaToClientConverter::convertDataFormatFromXml : invalid dataformat -1. Will be using RAW.",
            "CorbaToClientConverter::convertDataRateClassFromKorve : invalid datarateclass -1. Will be using "
            "20k."));
    EXPECT_STREQ(data->recordID, "");
    EXPECT_EQ(std::wstring(data->recordName), L"");
    EXPECT_EQ(data->size, 0u);
    EXPECT_EQ(data->recordStatus, TQ_KRV::rsIDLE);
    EXPECT_EQ(data->dataFormat, TQ_KRV::dfRAW);
    EXPECT_EQ(data->dataRate, TQ_KRV::drHF_20k);
    EXPECT_FALSE(data->deletable);
    EXPECT_EQ(data->indexEntries.length(), 0u);
}

TEST(MissingRecord, IsTheCallersOwnEachTime)
{
    CapturedTraces quiet(0);
    const TQ_KRV::struRECORD_DATA_var first = dummyCorbaRecordData();
    first->size = 7;
    const TQ_KRV::struRECORD_DATA_var second = dummyCorbaRecordData();
    EXPECT_EQ(second->size, 0u);
}

TEST(SentRecords, StandInTheOrderOfTheHash)
{
    QHash<QString, KORVE_RecordData> records;
    for (const char *id : {"a", "b", "c", "d"}) {
        KORVE_RecordData record = recordOf(received());
        record.SetRecordID(id);
        records.insert(id, record);
    }
    const TQ_KRV::seqRECORD_DATA_var sequence = toCorbaRecordDataSeq(records);
    ASSERT_EQ(sequence->length(), 4u);
    CORBA::ULong position = 0;
    for (const QString &id : records.keys())
        EXPECT_EQ(QString::fromLatin1(sequence.in()[position++].recordID), id);
    EXPECT_EQ(sequence.in()[0].size, 101u);
}

TEST(SentRecords, MayBeNone)
{
    const TQ_KRV::seqRECORD_DATA_var sequence = toCorbaRecordDataSeq({});
    EXPECT_EQ(sequence->length(), 0u);
}

TEST(SentMetaData, HasEveryMember)
{
    KORVE_RecordData record = recordOf(received());
    record.SetKorveAddress("10.0.0.7");
    const TQ_KRV::struMETA_DATA_var data = toCorbaMetaData(record);
    EXPECT_STREQ(data->recordID, "R\xFC"
                                 "1");
    EXPECT_STREQ(data->korveAddress, "10.0.0.7");
    EXPECT_EQ(std::wstring(data->recordName), L"Süd \xD83D\xDCE1");
    EXPECT_EQ(data->size, 101u);
    EXPECT_EQ(data->recordingLoopSize, 104u);
    EXPECT_EQ(data->dataFormat, TQ_KRV::dfIQBW);
    EXPECT_EQ(data->dataRate, TQ_KRV::drVUHF_1M);
    EXPECT_EQ(data->startTime, 102u);
    EXPECT_EQ(data->stopTime, 103u);
    EXPECT_EQ(data->startPosition, 106u);
    EXPECT_EQ(data->stopPosition, 105u);
}

TEST(SentMetaData, HasNoAddressIfTheRecordHasNone)
{
    const TQ_KRV::struMETA_DATA_var data = toCorbaMetaData(recordOf(received()));
    EXPECT_STREQ(data->korveAddress, "");
}

std::vector<quint64> pairsOf(const TQ_KRV::struMETA_DATA &data)
{
    return {data.tunerFrequency1, data.tunerFrequency2, data.bandwidth1,
            data.bandwidth2,      data.recordOffset1,   data.recordOffset2};
}

TEST(SentMetaData, HasThePairsOfExactlyTwoIndexEntries)
{
    KORVE_RecordData record = recordOf(received());
    const QVector<IndexEntry> two = std::as_const(record).GetIndexEntry();
    const TQ_KRV::struMETA_DATA_var paired = toCorbaMetaData(record);
    EXPECT_THAT(pairsOf(paired), ElementsAre(203, 213, 205, 4294967295, 201, 211));
    for (const QVector<IndexEntry> &others : {QVector<IndexEntry>{}, two.mid(0, 1), two + two.mid(0, 1)}) {
        record.SetIndexEntry(others);
        const TQ_KRV::struMETA_DATA_var unpaired = toCorbaMetaData(record);
        EXPECT_THAT(pairsOf(unpaired), ElementsAre(0, 0, 0, 0, 0, 0)) << others.size();
    }
}
} // namespace
