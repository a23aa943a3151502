#include "installation/recorder/devicestructures.h"

#include "korvebase/corbatodeviceconverter.h"

#include <algorithm>
#include <memory>

namespace installation::recorder
{

namespace Converter = KorveCommon::CorbaToDeviceConverter;

TQ_KORVE::struMETA_DATA toMetaData(const RecordSummary &record)
{
    TQ_KORVE::struMETA_DATA metaData;
    metaData.recordID = record.id.toUtf8().constData();
    metaData.size = record.sizeBytes;
    metaData.startTime = record.startUs;
    metaData.stopTime = record.stopUs;
    metaData.recordStatus = static_cast<CORBA::ULong>(record.status);
    metaData.dataFormat = static_cast<CORBA::ULong>(Converter::convertDataFormatFromXml(record.format));
    metaData.recordingLoopSize = record.loopSizeBytes;
    metaData.stopPosition = record.stopPosition;
    metaData.startPosition = record.startPosition;
    metaData.dataRate = static_cast<CORBA::ULong>(Converter::convertDataRateFromXml(record.rate));
    metaData.deletable = record.deletable;
    metaData.recordName = toWideText(record.name);
    return metaData;
}

TQ_KORVE::struMETA_DATA toFileEntry(const RecordFile &file)
{
    TQ_KORVE::struMETA_DATA entry{};
    entry.recordID = file.name.toUtf8().constData();
    entry.size = file.sizeBytes;
    return entry;
}

TQ_KORVE::struMETA_DATA toRefusedEntry(const RefusedFile &file)
{
    TQ_KORVE::struMETA_DATA entry{};
    entry.recordID = file.name.toUtf8().constData();
    entry.recordName = toWideText(file.reason);
    return entry;
}

TQ_KORVE::struRECORD_DETAILS toDetails(const Record &record)
{
    const TQ_KORVE::struINDEX_ENTRY first = toIndexEntry(record.index.value(0));
    TQ_KORVE::struRECORD_DETAILS details;
    details.size = record.sizeBytes;
    details.tunerFrequency = first.tunerFrequency;
    details.sampleRate = first.sampleRate;
    details.bandwidth = first.bandwidth;
    details.startPosition = record.startPosition;
    details.stopPosition = record.stopPosition;
    details.deletable = record.deletable;
    return details;
}

TQ_KORVE::struINDEX_ENTRY toIndexEntry(const IndexEntry &entry)
{
    TQ_KORVE::struINDEX_ENTRY result;
    result.recordOffset = entry.offsetBytes;
    result.timestamp = entry.timestampUs;
    result.tunerFrequency = entry.tunerFrequencyHz;
    result.sampleRate = static_cast<CORBA::ULong>(entry.sampleRateHz); // contract: 32 bits, more is cut
    result.bandwidth = static_cast<CORBA::ULong>(entry.bandwidthHz);   // contract: 32 bits, more is cut
    return result;
}

TQ_KORVE::struBookmarkEntry toBookmark(const Note &bookmark)
{
    TQ_KORVE::struBookmarkEntry result;
    result.timestamp = bookmark.timestampUs;
    result.bookmark = toWideText(bookmark.text);
    return result;
}

TQ_KORVE::struHistoryEntry toHistoryEntry(const Note &entry)
{
    TQ_KORVE::struHistoryEntry result;
    result.timestamp = entry.timestampUs;
    result.historyEntry = toWideText(entry.text);
    return result;
}

TQ_KORVE::wideText toWideText(const QString &text)
{
    TQ_KORVE::wideText units;
    units.length(static_cast<CORBA::ULong>(text.size()));
    for (int i = 0; i < text.size(); ++i)
        units[i] = text.at(i).unicode();
    return units;
}

QString fromWideText(const TQ_KORVE::wideText &text)
{
    QString result(static_cast<int>(text.length()), Qt::Uninitialized);
    for (CORBA::ULong i = 0; i < text.length(); ++i)
        result[static_cast<int>(i)] = QChar(text[i]);
    return result;
}

TQ_KORVE::seqOctet *toOctets(const QByteArray &bytes)
{
    auto octets = std::make_unique<TQ_KORVE::seqOctet>();
    octets->length(static_cast<CORBA::ULong>(bytes.size()));
    std::copy(bytes.cbegin(), bytes.cend(), octets->get_buffer());
    return octets.release();
}

QVector<FilePart> fromFileParts(const TQ_KORVE::seqFILE_PART &parts)
{
    QVector<FilePart> result;
    result.reserve(static_cast<int>(parts.length()));
    for (CORBA::ULong i = 0; i < parts.length(); ++i)
        result.append({parts[i].firstPosition, parts[i].lastPosition});
    return result;
}

} // namespace installation::recorder
