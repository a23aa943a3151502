#include "installation/recorder/signaldescription.h"

#include "installation/recorder/recordererror.h"

#include "korvebase/corbatodeviceconverter.h"
#include "korvebase/datarateclass.h"

#include <cmath>

namespace installation::recorder
{

namespace
{

using korve::channel::DataRateClass;
using KORVE_XML::KORVE_RecordData;

constexpr long double longestUs = 1e17L; // three thousand years
constexpr unsigned lastWireClass = TQ_KORVE::drVUHF_1M;

RecorderError refusal(const QString &reason)
{
    return {TQ_KORVE::ekINVALID_VALUE, reason};
}

/// Those in which a recorder can name a record to others, and that stand for a bandwidth.
QList<DataRateClass::DataRate> signalClasses()
{
    QList<DataRateClass::DataRate> classes;
    for (unsigned code = 0; code <= lastWireClass; ++code)
        if (code != TQ_KORVE::drRESULT_DATA)
            classes.append(static_cast<DataRateClass::DataRate>(
                KorveCommon::CorbaToDeviceConverter::convertDataRateClassFromKorve(code)));
    return classes;
}

DataRate narrowestClass(double bandwidthHz)
{
    static const QList<DataRateClass::DataRate> classes = signalClasses();
    const DataRateClass::DataRate rate = DataRateClass::forBandwidth(bandwidthHz, classes);
    if (DataRateClass::toBandwidth(rate) < bandwidthHz)
        throw refusal(QStringLiteral("a bandwidth of %1 Hz is above that of every data-rate class").arg(bandwidthHz));
    return static_cast<DataRate>(rate);
}

quint64 sampleCount(const SignalDescription &signal)
{
    const quint64 bytes = quint64(signal.sampleFormat.bytes) * signal.channels;
    if (bytes == 0 || signal.sizeBytes == 0)
        throw refusal(QStringLiteral("it holds no samples"));
    if (signal.sizeBytes % bytes != 0)
        throw refusal(QStringLiteral("%1 bytes are no whole number of samples of %2 bytes")
                          .arg(QString::number(signal.sizeBytes), QString::number(bytes)));
    return signal.sizeBytes / bytes;
}

void requireRate(double sampleRateHz)
{
    if (!std::isfinite(sampleRateHz) || sampleRateHz <= 0)
        throw refusal(QStringLiteral("a sample rate of %1 Hz").arg(sampleRateHz));
}

/// Exact also for days of samples, which microseconds in a double are not.
quint64 durationUs(quint64 samples, double sampleRateHz)
{
    const long double duration = static_cast<long double>(samples) * 1'000'000.0L / sampleRateHz;
    if (duration > longestUs)
        throw refusal(QStringLiteral("at %1 Hz it would last for ages").arg(sampleRateHz));
    return static_cast<quint64>(std::llround(duration));
}

} // namespace

Record describe(const SignalDescription &signal)
{
    requireRate(signal.sampleRateHz);
    const double bandwidthHz = signal.sampleFormat.complex ? signal.sampleRateHz : signal.sampleRateHz / 2;
    Record record;
    record.sizeBytes = signal.sizeBytes;
    record.startUs = signal.beginUs;
    record.stopUs = signal.beginUs + durationUs(sampleCount(signal), signal.sampleRateHz);
    record.format = signal.dataFormat;
    record.rate = narrowestClass(bandwidthHz);
    record.stopPosition = signal.sizeBytes;
    const quint64 sampleRateHz = std::llround(signal.sampleRateHz);
    const quint64 wholeBandwidthHz = std::llround(bandwidthHz);
    record.index = {{0, record.startUs, signal.firstTunerFrequencyHz, sampleRateHz, wholeBandwidthHz},
                    {signal.sizeBytes, record.stopUs, signal.lastTunerFrequencyHz, sampleRateHz, wholeBandwidthHz}};
    return record;
}

} // namespace installation::recorder
