#include "korvebase/corbatodeviceconverter.h"

#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using namespace KorveCommon::CorbaToDeviceConverter;
using KORVE_XML::BookmarkEntry;
using KORVE_XML::HistoryEntry;
using KORVE_XML::IndexEntry;
using KORVE_XML::KORVE_RecordData;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TQ_KORVE::wideText units(const QString &text)
{
    TQ_KORVE::wideText sequence;
    sequence.length(static_cast<CORBA::ULong>(text.size()));
    std::copy_n(text.utf16(), text.size(), sequence.get_buffer());
    return sequence;
}

TQ_KORVE::struMETA_DATA received()
{
    TQ_KORVE::struMETA_DATA data;
    data.recordID = "R\xC3\xBC"
                    "1";
    data.size = 101;
    data.startTime = 102;
    data.stopTime = 103;
    data.recordStatus = 7;
    data.dataFormat = 23;
    data.recordingLoopSize = 104;
    data.stopPosition = 105;
    data.startPosition = 106;
    data.dataRate = 4;
    data.deletable = true;
    data.recordName = units(QString::fromUtf8("Süd \xF0\x9F\x93\xA1"));
    return data;
}

TQ_KORVE::seqINDEX_ENTRY receivedIndex()
{
    TQ_KORVE::seqINDEX_ENTRY index;
    index.length(2);
    index[0] = {201, 202, 203, 204, 205};
    index[1] = {211, 212, 213, 214, 215};
    return index;
}

TQ_KORVE::seqBookmarks receivedBookmarks()
{
    TQ_KORVE::seqBookmarks bookmarks;
    bookmarks.length(1);
    bookmarks[0].timestamp = 301;
    bookmarks[0].bookmark = units(QString::fromUtf8("Lesezeichen ä"));
    return bookmarks;
}

TQ_KORVE::seqHistory receivedHistory()
{
    TQ_KORVE::seqHistory history;
    history.length(1);
    history[0].timestamp = 401;
    history[0].historyEntry = units("kopiert");
    return history;
}

TEST(DeviceRecord, HasEveryMember)
{
    KORVE_RecordData filled;
    fillRecordData(filled, received());
    const KORVE_RecordData record = filled;
    EXPECT_EQ(record.GetRecordID(), QString::fromUtf8("Rü1"));
    EXPECT_EQ(record.GetRecordName(), QString::fromUtf8("Süd \xF0\x9F\x93\xA1"));
    EXPECT_EQ(record.GetSize(), 101u);
    EXPECT_EQ(record.GetStartTime(), 102u);
    EXPECT_EQ(record.GetStopTime(), 103u);
    EXPECT_EQ(record.GetRecordStatus(), KORVE_RecordData::RESTORING);
    EXPECT_EQ(record.GetDataFormat(), KORVE_RecordData::IQBW);
    EXPECT_EQ(record.GetRecordingLoopSize(), 104u);
    EXPECT_EQ(record.GetStopPosition(), 105u);
    EXPECT_EQ(record.GetStartPosition(), 106u);
    EXPECT_EQ(record.GetDataRate(), KORVE_RecordData::VUHF_40M) << "4 in the device's numbering";
    EXPECT_TRUE(record.GetDeletable());
    EXPECT_FALSE(record.IsIndexEntrySet() || record.IsBookmarkEntrySet() || record.IsHistoryEntrySet());
}

TEST(DeviceRecord, FallsBackWhereTheDeviceSendsUnknownNumbers)
{
    TQ_KORVE::struMETA_DATA data = received();
    data.recordStatus = 8;
    data.dataFormat = 24;
    data.dataRate = 4294967295;
    CapturedTraces traces;
    KORVE_RecordData record;
    fillRecordData(record, data);
    EXPECT_EQ(record.GetRecordStatus(), KORVE_RecordData::IDLE);
    EXPECT_EQ(record.GetDataFormat(), KORVE_RecordData::RAW);
    EXPECT_EQ(record.GetDataRate(), KORVE_RecordData::HF_20k);
    EXPECT_THAT(
        traces.take(),
        ElementsAre(
            "CorbaToDeviceConverter::convertRecordStatusFromKorve : invalid record status 8. Will be using Idle.",
            "CorbaToDeviceConverter::convertDataFormatFromKorve : invalid dataformat 24. Will be using RAW.",
            "CorbaToDeviceConverter::convertDataRateClassFromKorve : invalid datarateclass 4294967295. Will be using "
            "20k."));
}

TEST(DeviceRecord, AppendsEntriesToThoseThatItHas)
{
    KORVE_RecordData record;
    for (int time = 0; time < 2; ++time)
        fillRecordData(record, received(), receivedIndex(), receivedBookmarks(), receivedHistory());
    ASSERT_THAT(std::as_const(record).GetIndexEntry(), SizeIs(4));
    EXPECT_EQ(std::as_const(record).GetIndexEntry().at(3).GetRecordOffset(), 211u);
    ASSERT_THAT(std::as_const(record).GetBookmarkEntry(), SizeIs(2));
    EXPECT_EQ(std::as_const(record).GetBookmarkEntry().at(1).GetBookmark(), QString::fromUtf8("Lesezeichen ä"));
    ASSERT_THAT(std::as_const(record).GetHistoryEntry(), SizeIs(2));
    EXPECT_EQ(std::as_const(record).GetHistoryEntry().at(1).GetHistoryEntry(), "kopiert");
}

TEST(DeviceRecord, MayHaveEmptyTexts)
{
    TQ_KORVE::struMETA_DATA data = received();
    data.recordID = "";
    data.recordName.length(0);
    KORVE_RecordData record;
    fillRecordData(record, data);
    EXPECT_TRUE(record.IsRecordIDSet());
    EXPECT_TRUE(record.IsRecordNameSet());
    EXPECT_TRUE(record.HasData()) << "the texts are empty, not null";
}

TEST(DeviceEntries, AreFilledOneByOne)
{
    IndexEntry index;
    fillIndexEntry(index, receivedIndex()[0]);
    EXPECT_EQ(index.GetRecordOffset(), 201u);
    EXPECT_EQ(index.GetTimestamp(), 202u);
    EXPECT_EQ(index.GetTunerFrequency(), 203u);
    EXPECT_EQ(index.GetSampleRate(), 204u);
    EXPECT_EQ(index.GetBandwidth(), 205u);
    BookmarkEntry bookmark;
    fillBookmarkEntry(bookmark, receivedBookmarks()[0]);
    EXPECT_EQ(bookmark.GetTimestamp(), 301u);
    EXPECT_EQ(bookmark.GetBookmark(), QString::fromUtf8("Lesezeichen ä"));
    HistoryEntry history;
    fillHistoryEntry(history, receivedHistory()[0]);
    EXPECT_EQ(history.GetTimestamp(), 401u);
    EXPECT_EQ(history.GetHistoryEntry(), "kopiert");
}

TEST(DeviceRecords, AreAppendedWhateverTheyHold)
{
    TQ_KORVE::seqMETA_DATA sequence;
    sequence.length(3);
    sequence[0] = received();
    sequence[1] = received();
    sequence[1].recordName = units(QString(QChar(1))); // not allowed in XML
    sequence[2] = received();
    sequence[2].size = std::numeric_limits<quint64>::max(); // read back from XML as 0
    CapturedTraces traces;
    QVector<KORVE_RecordData> records{KORVE_RecordData()};
    fillRecordData(records, sequence);
    ASSERT_THAT(records, SizeIs(4));
    EXPECT_EQ(records.at(1).GetRecordID(), QString::fromUtf8("Rü1"));
    EXPECT_EQ(records.at(2).GetRecordName(), QString(QChar(1)));
    EXPECT_EQ(records.at(3).GetSize(), std::numeric_limits<quint64>::max());
    EXPECT_THAT(traces.take(), IsEmpty());
}
} // namespace
