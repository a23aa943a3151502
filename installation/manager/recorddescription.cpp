#include "installation/manager/recorddescription.h"

#include "korvebase/corbatoclientconverter.h"
#include "korvebase/corbatodeviceconverter.h"

#include "coresupport/trace.h"
#include "objectbase/exceptions.h"

#include <algorithm>
#include <utility>

namespace installation
{

namespace
{

namespace ToClient = KorveCommon::CorbaToClientConverter;
namespace ToDevice = KorveCommon::CorbaToDeviceConverter;
using KORVE_XML::KORVE_RecordData;

constexpr const char *sourceName = "installation/manager/recorddescription";

TQ_KORVE::seqINDEX_ENTRY *indexOf(TQ_KORVE::IF_Control_ptr recorder, const char *recordId)
{
    const CORBA::ULong count = recorder->getNrOfIndexEntries(recordId);
    return count == 0 ? new TQ_KORVE::seqINDEX_ENTRY : recorder->getSeqOfIndexEntries(recordId, 0, count);
}

/// Null, with a trace, for one that the object model refuses: it must not cost its neighbours.
TQ_KRV::struRECORD_DATA *toClientRecord(const TQ_KORVE::struMETA_DATA &metaData)
{
    try {
        KORVE_RecordData record;
        ToDevice::fillRecordData(record, metaData);
        return ToClient::toCorbaRecordData(record);
    } catch (const REPORTGENERATOR::ReportException &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("record %1 is left out: %2")
                .arg(QString::fromUtf8(metaData.recordID), QString::fromUtf8(error.what()));
        });
        return nullptr;
    }
}

} // namespace

KORVE_RecordData wholeRecord(TQ_KORVE::IF_Control_ptr recorder, const char *recordId)
{
    const TQ_KORVE::struMETA_DATA_var metaData = recorder->getMetaData(recordId);
    const TQ_KORVE::seqINDEX_ENTRY_var index = indexOf(recorder, recordId);
    const TQ_KORVE::seqBookmarks_var bookmarks = recorder->getBookmarks(recordId);
    const TQ_KORVE::seqHistory_var history = recorder->getHistory(recordId);
    KORVE_RecordData record;
    ToDevice::fillRecordData(record, metaData.in(), index.in(), bookmarks.in(), history.in());
    return record;
}

KORVE_RecordData recordWithIndex(TQ_KORVE::IF_Control_ptr recorder, const char *recordId)
{
    const TQ_KORVE::struMETA_DATA_var metaData = recorder->getMetaData(recordId);
    const TQ_KORVE::seqINDEX_ENTRY_var index = indexOf(recorder, recordId);
    KORVE_RecordData record;
    ToDevice::fillRecordData(record, metaData.in(), index.in(), TQ_KORVE::seqBookmarks(), TQ_KORVE::seqHistory());
    return record;
}

TQ_KRV::seqRECORD_DATA *toClientRecords(const TQ_KORVE::seqMETA_DATA &records)
{
    TQ_KRV::seqRECORD_DATA_var converted = new TQ_KRV::seqRECORD_DATA;
    converted->length(records.length());
    CORBA::ULong count = 0;
    for (CORBA::ULong position = 0; position < records.length(); ++position) {
        TQ_KRV::struRECORD_DATA_var record = toClientRecord(records[position]);
        if (record.operator->())
            converted[count++] = std::move(record.inout()); // no swap: the place holds no value yet
    }
    converted->length(count);
    return converted._retn();
}

TQ_KORVE::wideText toDeviceText(const CORBA::WChar *text)
{
    QString units; // not fromWCharArray, which takes a byte order mark away
    for (; *text; ++text) {
        const auto character = static_cast<uint>(*text);
        if (QChar::requiresSurrogates(character)) { // only from a caller within the process
            units += QChar(QChar::highSurrogate(character));
            units += QChar(QChar::lowSurrogate(character));
        } else {
            units += QChar(static_cast<ushort>(character));
        }
    }
    TQ_KORVE::wideText converted;
    converted.length(static_cast<CORBA::ULong>(units.size()));
    std::copy_n(units.utf16(), units.size(), converted.get_buffer());
    return converted;
}

} // namespace installation
