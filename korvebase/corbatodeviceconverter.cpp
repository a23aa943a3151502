#include "korvebase/corbatodeviceconverter.h"

#include "korvebase/testparse.h"
#include "korvebase/tracedfallback.h"
#include "korvebase/wireenumerations.h"
#include "korvebase/wirerecord.h"

namespace KorveCommon::CorbaToDeviceConverter
{

namespace
{

using KORVE_XML::KORVE_RecordData;
using wire::fromWire;
using wire::toWire;
using wire::tracedFallback;

constexpr char sourceName[] = "korvebase/corbatodeviceconverter";

static_assert(wire::passing<KORVE_RecordData::DataRate, TQ_KORVE::eDATARATE_CLASS> == 13, "all of the wire's literals");
static_assert(wire::passing<KORVE_RecordData::DataFormat, TQ_KORVE::eDATA_FORMAT> == 24, "all of the wire's literals");
static_assert(wire::passing<KORVE_RecordData::RecordStatus, TQ_KORVE::eRECORD_STATUS> == 8, "all but ACTIVE");

} // namespace

void fillRecordData(KORVE_RecordData &record, const TQ_KORVE::struMETA_DATA &metaData,
                    const TQ_KORVE::seqINDEX_ENTRY &index, const TQ_KORVE::seqBookmarks &bookmarks,
                    const TQ_KORVE::seqHistory &history)
{
    wire::fillPlainMembers(record, metaData);
    record.SetRecordStatus(convertRecordStatusFromKorve(metaData.recordStatus));
    record.SetDataFormat(convertDataFormatFromKorve(metaData.dataFormat));
    record.SetDataRate(convertDataRateClassFromKorve(metaData.dataRate));
    wire::appendLists(record, index, bookmarks, history);
}

void fillRecordData(KORVE_RecordData &record, const TQ_KORVE::struMETA_DATA &metaData)
{
    fillRecordData(record, metaData, TQ_KORVE::seqINDEX_ENTRY(), TQ_KORVE::seqBookmarks(), TQ_KORVE::seqHistory());
}

void fillRecordData(QVector<KORVE_RecordData> &records, const TQ_KORVE::seqMETA_DATA &metaData)
{
    records.reserve(records.size() + static_cast<int>(metaData.length()));
    for (CORBA::ULong position = 0; position < metaData.length(); ++position) {
        KORVE_RecordData record;
        fillRecordData(record, metaData[position]);
        traceUnreadable(record);
        records.append(std::move(record));
    }
}

void fillIndexEntry(KORVE_XML::IndexEntry &entry, const TQ_KORVE::struINDEX_ENTRY &data)
{
    wire::fillIndex(entry, data);
}

void fillBookmarkEntry(KORVE_XML::BookmarkEntry &entry, const TQ_KORVE::struBookmarkEntry &data)
{
    wire::fillBookmark(entry, data);
}

void fillHistoryEntry(KORVE_XML::HistoryEntry &entry, const TQ_KORVE::struHistoryEntry &data)
{
    wire::fillHistory(entry, data);
}

TQ_KORVE::eDATARATE_CLASS convertDataRateFromXml(KORVE_RecordData::DataRate rate)
{
    constexpr char text[] = "CorbaToDeviceConverter::convertDataRateFromXml : invalid datarateclass %1. "
                            "Will be using 20k.";
    const auto known = toWire<TQ_KORVE::eDATARATE_CLASS>(rate);
    return known ? *known : tracedFallback(TQ_KORVE::drHF_20k, rate, text, sourceName);
}

TQ_KORVE::eDATA_FORMAT convertDataFormatFromXml(KORVE_RecordData::DataFormat format)
{
    constexpr char text[] = "CorbaToDeviceConverter::convertDataFormatFromXml : invalid dataformat %1. "
                            "Will be using RAW.";
    const auto known = toWire<TQ_KORVE::eDATA_FORMAT>(format);
    return known ? *known : tracedFallback(TQ_KORVE::dfRAW, format, text, sourceName);
}

QString convertWindowingModesToString(TQ_KORVE::eFFT_WINDOWING_MODES window)
{
    switch (window) {
    case TQ_KORVE::wmRectangle: return QStringLiteral("Rectangle");
    case TQ_KORVE::wmHamming: return QStringLiteral("Hamming");
    case TQ_KORVE::wmHanning: return QStringLiteral("Hanning"); // contract: not "Hann"
    case TQ_KORVE::wmKaiser: return QStringLiteral("Kaiser");
    case TQ_KORVE::wmBlackman: return QStringLiteral("Blackman");
    }
    return QStringLiteral("unknown FFT_WINDOWING_MODE");
}

KORVE_RecordData::RecordStatus convertRecordStatusFromKorve(unsigned int status)
{
    constexpr char text[] = "CorbaToDeviceConverter::convertRecordStatusFromKorve : invalid record status %1. "
                            "Will be using Idle.";
    const auto known = fromWire<KORVE_RecordData::RecordStatus, TQ_KORVE::eRECORD_STATUS>(status);
    return known ? *known : tracedFallback(KORVE_RecordData::IDLE, status, text, sourceName);
}

KORVE_RecordData::DataFormat convertDataFormatFromKorve(unsigned int format)
{
    constexpr char text[] = "CorbaToDeviceConverter::convertDataFormatFromKorve : invalid dataformat %1. "
                            "Will be using RAW.";
    const auto known = fromWire<KORVE_RecordData::DataFormat, TQ_KORVE::eDATA_FORMAT>(format);
    return known ? *known : tracedFallback(KORVE_RecordData::RAW, format, text, sourceName);
}

KORVE_RecordData::DataRate convertDataRateClassFromKorve(unsigned int rate)
{
    constexpr char text[] = "CorbaToDeviceConverter::convertDataRateClassFromKorve : invalid datarateclass %1. "
                            "Will be using 20k.";
    const auto known = fromWire<KORVE_RecordData::DataRate, TQ_KORVE::eDATARATE_CLASS>(rate);
    return known ? *known : tracedFallback(KORVE_RecordData::HF_20k, rate, text, sourceName);
}

} // namespace KorveCommon::CorbaToDeviceConverter
