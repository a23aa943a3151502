#include "installation/recorder/recordingformat.h"

#include "installation/recorder/filetime.h"
#include "installation/recorder/samplelayout.h"

#include "korvebase/datarateclass.h"

#include <QJsonArray>

namespace installation::recorder
{

namespace
{

using KORVE_XML::KORVE_RecordData;

/// The word for the samples in SigMF.
const char *datatypeOf(DataFormat format)
{
    switch (format) {
    case KORVE_RecordData::RAW:
    case KORVE_RecordData::IQ_BURST:
    case KORVE_RecordData::IQDW:
    case KORVE_RecordData::IQBW:
        return "ci16_le";
    case KORVE_RecordData::ANALOG_AUDIO:
    case KORVE_RecordData::DIGITAL_AUDIO:
    case KORVE_RecordData::TIMEDOMAIN_DATA:
        return "ri16_le";
    default: // results, of which only their producers know more
        return "ru8";
    }
}

bool isComplex(const Record &record)
{
    return record.sigmf.value(QLatin1String("global")).toObject().value(QLatin1String("core:datatype")).toString().startsWith(
        QLatin1Char('c'));
}

} // namespace

Record newRecording(const RecordingWish &wish, quint64 nowUs)
{
    Record record;
    record.startUs = nowUs;
    record.stopUs = nowUs;
    record.name = QStringLiteral("Recording %1").arg(toSigmfTime(nowUs));
    record.status = KORVE_RecordData::RECORDING; // what is stored, until the recording is closed
    record.format = wish.format;
    record.rate = wish.rate;
    record.sigmf = {{QStringLiteral("global"),
                     QJsonObject{{QStringLiteral("core:datatype"), QLatin1String(datatypeOf(wish.format))},
                                 {QStringLiteral("core:num_channels"), 1},
                                 {QStringLiteral("core:version"), QStringLiteral("1.0.0")}}},
                    {QStringLiteral("captures"), QJsonArray()},
                    {QStringLiteral("annotations"), QJsonArray()}};
    const quint64 sampleBytes = sampleLayout(record).sampleBytes();
    record.loopSizeBytes = wish.loopBytes / sampleBytes * sampleBytes;
    return record;
}

quint64 sampleRateOf(const Record &record)
{
    using korve::channel::DataRateClass;
    if (record.rate == KORVE_RecordData::RESULT_DATA)
        return 0;
    const double bandwidthHz = DataRateClass::toBandwidth(static_cast<DataRateClass::DataRate>(record.rate));
    return static_cast<quint64>(isComplex(record) ? bandwidthHz : 2 * bandwidthHz);
}

} // namespace installation::recorder
