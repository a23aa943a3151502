#include "korvebase/corbatoclientconverter.h"

#include "korvebase/tracedfallback.h"
#include "korvebase/wireenumerations.h"
#include "korvebase/wirerecord.h"
#include "korvebase/wiretext.h"

#include <memory>

namespace KorveCommon::CorbaToClientConverter
{

namespace
{

using KORVE_XML::BookmarkEntry;
using KORVE_XML::HistoryEntry;
using KORVE_XML::IndexEntry;
using KORVE_XML::KORVE_RecordData;
using KORVE_XML::NetIfParams;
using wire::fromWire;
using wire::toWire;
using wire::tracedFallback;

constexpr char sourceName[] = "korvebase/corbatoclientconverter";

static_assert(wire::passing<KORVE_RecordData::DataRate, TQ_KRV::eDATARATE_CLASS> == 13, "16 literals without 4, 5, 7");
static_assert(wire::passing<KORVE_RecordData::DataFormat, TQ_KRV::eDATA_FORMAT> == 24, "all of the wire's literals");
static_assert(wire::passing<KORVE_RecordData::RecordStatus, TQ_KRV::eRECORD_STATUS> == 9, "all of the wire's literals");
static_assert(wire::passing<NetIfParams::KorveInterfaceType, TQ_KRV::interfaceTypeEnum> == 5, "all of them");
static_assert(wire::passing<KorveDataTypes::eFFT_Window, TQ_KRV::eFFT_WINDOWING_MODES> == 5, "all of them");

/// The wire has 32 bits for some numbers of 64.
CORBA::ULong cut(quint64 number)
{
    return static_cast<CORBA::ULong>(number);
}

void fillCorbaIndexEntry(TQ_KRV::struINDEX_ENTRY &data, const IndexEntry &entry)
{
    data.recordOffset = entry.GetRecordOffset();
    data.timestamp = entry.GetTimestamp();
    data.tunerFrequency = entry.GetTunerFrequency();
    data.sampleRate = cut(entry.GetSampleRate());
    data.bandwidth = cut(entry.GetBandwidth());
}

void fillCorbaHistoryEntry(TQ_KRV::struHistoryEntry &data, const HistoryEntry &entry)
{
    data.timestamp = entry.GetTimestamp();
    data.historyEntry = wire::wideText(entry.GetHistoryEntry());
}

template <class Sequence, class Entry, class Fill>
void fillSequence(Sequence &sequence, const QVector<Entry> &entries, const Fill &fill)
{
    sequence.length(static_cast<CORBA::ULong>(entries.size()));
    for (int position = 0; position < entries.size(); ++position)
        fill(sequence[static_cast<CORBA::ULong>(position)], entries.at(position));
}

void fillCorbaRecordData(TQ_KRV::struRECORD_DATA &data, const KORVE_RecordData &record)
{
    data.recordID = wire::latin1(record.GetRecordID());
    data.recordName = wire::wideText(record.GetRecordName());
    data.size = record.GetSize();
    data.startTime = record.GetStartTime();
    data.stopTime = record.GetStopTime();
    data.recordStatus = convertRecordStatusFromXml(record.GetRecordStatus());
    data.dataFormat = convertDataFormatFromXml(record.GetDataFormat());
    data.recordingLoopSize = record.GetRecordingLoopSize();
    data.stopPosition = record.GetStopPosition();
    data.startPosition = record.GetStartPosition();
    data.dataRate = convertDataRateClassFromXml(record.GetDataRate());
    data.deletable = record.GetDeletable();
    fillSequence(data.indexEntries, record.GetIndexEntry(), fillCorbaIndexEntry);
    fillSequence(data.bookmarks, record.GetBookmarkEntry(), fillCorbaBookmarkEntry);
    fillSequence(data.history, record.GetHistoryEntry(), fillCorbaHistoryEntry);
}

void fillIndexPair(TQ_KRV::struMETA_DATA &data, const IndexEntry &first, const IndexEntry &second)
{
    data.tunerFrequency1 = first.GetTunerFrequency();
    data.tunerFrequency2 = second.GetTunerFrequency();
    data.bandwidth1 = cut(first.GetBandwidth());
    data.bandwidth2 = cut(second.GetBandwidth());
    data.recordOffset1 = first.GetRecordOffset();
    data.recordOffset2 = second.GetRecordOffset();
}

/// Calls @p afterEach with each entry of @p sequence that has been converted.
template <class Sequence, class AfterEach>
void appendRecords(Sequence &sequence, QVector<KORVE_RecordData> &records, const AfterEach &afterEach)
{
    records.reserve(records.size() + static_cast<int>(sequence.length()));
    for (CORBA::ULong position = 0; position < sequence.length(); ++position) {
        KORVE_RecordData record;
        fillRecordData(record, sequence[position]);
        records.append(std::move(record));
        afterEach(sequence[position]);
    }
}

} // namespace

bool convertRecords(const TQ_KRV::seqRECORD_DATA &sequence, QVector<KORVE_RecordData> &records)
{
    appendRecords(sequence, records, [](const TQ_KRV::struRECORD_DATA &) {});
    return !records.isEmpty();
}

bool convertRecords(TQ_KRV::seqRECORD_DATA &&sequence, QVector<KORVE_RecordData> &records)
{
    appendRecords(sequence, records, [](TQ_KRV::struRECORD_DATA &data) {
        std::destroy_at(&data);
        std::construct_at(&data);
    });
    return !records.isEmpty();
}

void fillRecordData(KORVE_RecordData &record, const TQ_KRV::struRECORD_DATA &data)
{
    wire::fillPlainMembers(record, data);
    record.SetRecordStatus(convertRecordStatusFromClient(data.recordStatus));
    record.SetDataFormat(convertDataFormatFromClient(data.dataFormat));
    record.SetDataRate(convertDataRateClassFromClient(data.dataRate));
    wire::appendLists(record, data.indexEntries, data.bookmarks, data.history);
}

void fillBookmarkEntry(BookmarkEntry &entry, const TQ_KRV::struBookmarkEntry &data)
{
    wire::fillBookmark(entry, data);
}

void fillHistoryEntry(HistoryEntry &entry, const TQ_KRV::struHistoryEntry &data)
{
    wire::fillHistory(entry, data);
}

void fillCorbaBookmarkEntry(TQ_KRV::struBookmarkEntry &data, const BookmarkEntry &entry)
{
    data.timestamp = entry.GetTimestamp();
    data.bookmark = wire::wideText(entry.GetBookmark());
}

TQ_KRV::struRECORD_DATA *toCorbaRecordData(const KORVE_RecordData &record)
{
    TQ_KRV::struRECORD_DATA_var data = new TQ_KRV::struRECORD_DATA;
    fillCorbaRecordData(data, record);
    return data._retn();
}

TQ_KRV::struMETA_DATA *toCorbaMetaData(const KORVE_RecordData &record)
{
    TQ_KRV::struMETA_DATA_var data = new TQ_KRV::struMETA_DATA(); // the parentheses clear all numbers
    data->recordID = wire::latin1(record.GetRecordID());
    data->korveAddress = wire::latin1(record.IsKorveAddressSet() ? record.GetKorveAddress() : QString());
    data->recordName = wire::wideText(record.GetRecordName());
    data->size = record.GetSize();
    data->recordingLoopSize = record.GetRecordingLoopSize();
    data->dataFormat = convertDataFormatFromXml(record.GetDataFormat());
    data->dataRate = convertDataRateClassFromXml(record.GetDataRate());
    data->startTime = record.GetStartTime();
    data->stopTime = record.GetStopTime();
    data->startPosition = record.GetStartPosition();
    data->stopPosition = record.GetStopPosition();
    const QVector<IndexEntry> &index = record.GetIndexEntry();
    if (index.size() == 2)
        fillIndexPair(data, index.at(0), index.at(1));
    return data._retn();
}

TQ_KRV::struRECORD_DATA *dummyCorbaRecordData()
{
    static const KORVE_RecordData missing = [] {
        KORVE_RecordData record;
        record.ResetToDefault(); // a record without storage would make it when it is read, here by several threads
        return record;
    }();
    return toCorbaRecordData(missing);
}

TQ_KRV::seqRECORD_DATA *toCorbaRecordDataSeq(const QHash<QString, KORVE_RecordData> &records)
{
    TQ_KRV::seqRECORD_DATA_var sequence = new TQ_KRV::seqRECORD_DATA;
    sequence->length(static_cast<CORBA::ULong>(records.size()));
    CORBA::ULong position = 0;
    for (const KORVE_RecordData &record : records)
        fillCorbaRecordData(sequence[position++], record);
    return sequence._retn();
}

TQ_KRV::eDATARATE_CLASS convertDataRateClassFromXml(KORVE_RecordData::DataRate rate)
{
    // contract: the text names the other direction
    constexpr char text[] = "CorbaToClientConverter::convertDataRateClassFromKorve : invalid datarateclass %1. "
                            "Will be using 20k.";
    const auto known = toWire<TQ_KRV::eDATARATE_CLASS>(rate);
    return known ? *known : tracedFallback(TQ_KRV::drHF_20k, rate, text, sourceName);
}

TQ_KRV::eRECORD_STATUS convertRecordStatusFromXml(KORVE_RecordData::RecordStatus status)
{
    constexpr char text[] = "CorbaToClientConverter::convertRecordStatusFromXml : invalid record status %1. "
                            "Will be using Idle.";
    const auto known = toWire<TQ_KRV::eRECORD_STATUS>(status);
    return known ? *known : tracedFallback(TQ_KRV::rsIDLE, status, text, sourceName);
}

TQ_KRV::eDATA_FORMAT convertDataFormatFromXml(KORVE_RecordData::DataFormat format)
{
    constexpr char text[] = "CorbaToClientConverter::convertDataFormatFromXml : invalid dataformat %1. "
                            "Will be using RAW.";
    const auto known = toWire<TQ_KRV::eDATA_FORMAT>(format);
    return known ? *known : tracedFallback(TQ_KRV::dfRAW, format, text, sourceName);
}

TQ_KRV::interfaceTypeEnum convertKorveInterfaceTypeFromXml(NetIfParams::KorveInterfaceType type)
{
    return toWire<TQ_KRV::interfaceTypeEnum>(type).value_or(TQ_KRV::TCP_IF);
}

KORVE_RecordData::RecordStatus convertRecordStatusFromClient(TQ_KRV::eRECORD_STATUS status)
{
    constexpr char text[] = "CorbaToClientConverter::convertRecordStatusFromClient : invalid record status %1. "
                            "Will be using Idle.";
    const auto known = fromWire<KORVE_RecordData::RecordStatus, TQ_KRV::eRECORD_STATUS>(status);
    return known ? *known : tracedFallback(KORVE_RecordData::IDLE, status, text, sourceName);
}

KORVE_RecordData::DataFormat convertDataFormatFromClient(TQ_KRV::eDATA_FORMAT format)
{
    constexpr char text[] = "CorbaToClientConverter::convertDataFormatFromClient : invalid dataformat %1. "
                            "Will be using RAW.";
    const auto known = fromWire<KORVE_RecordData::DataFormat, TQ_KRV::eDATA_FORMAT>(format);
    return known ? *known : tracedFallback(KORVE_RecordData::RAW, format, text, sourceName);
}

KORVE_RecordData::DataRate convertDataRateClassFromClient(TQ_KRV::eDATARATE_CLASS rate)
{
    constexpr char text[] = "CorbaToClientConverter::convertDataRateClassFromClient : invalid datarateclass %1. "
                            "Will be using 20k.";
    const auto known = fromWire<KORVE_RecordData::DataRate, TQ_KRV::eDATARATE_CLASS>(rate);
    return known ? *known : tracedFallback(KORVE_RecordData::HF_20k, rate, text, sourceName);
}

NetIfParams::KorveInterfaceType convertKorveInterfaceType(TQ_KRV::interfaceTypeEnum type)
{
    return fromWire<NetIfParams::KorveInterfaceType, TQ_KRV::interfaceTypeEnum>(type).value_or(NetIfParams::TCP_IF);
}

TQ_KRV::eFFT_WINDOWING_MODES convertWindowingModes(KorveDataTypes::eFFT_Window window)
{
    return toWire<TQ_KRV::eFFT_WINDOWING_MODES>(window).value_or(TQ_KRV::wmRectangle);
}

} // namespace KorveCommon::CorbaToClientConverter
