#include "installation/recorder/signaldescription.h"

#include "installation/recorder/recordererror.h"

#include "korvebase/corbatodeviceconverter.h"
#include "korvebase/datarateclass.h"

#include <algorithm>
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
    const quint64 bytes = signal.frameBytes();
    if (bytes == 0 || signal.sizeBytes == 0)
        throw refusal(QStringLiteral("it holds no samples"));
    if (signal.sizeBytes % bytes != 0)
        throw refusal(QStringLiteral("%1 bytes are no whole number of samples of %2 bytes")
                          .arg(QString::number(signal.sizeBytes), QString::number(bytes)));
    return signal.sizeBytes / bytes;
}

double bandwidthOf(double sampleRateHz, bool complex)
{
    return complex ? sampleRateHz : sampleRateHz / 2;
}

/// Exact also for days of samples, which microseconds in a double are not.
quint64 durationUs(quint64 samples, double sampleRateHz)
{
    const long double duration = static_cast<long double>(samples) * 1'000'000.0L / sampleRateHz;
    if (duration > longestUs)
        throw refusal(QStringLiteral("at %1 Hz it would last for ages").arg(sampleRateHz));
    return static_cast<quint64>(std::llround(duration));
}

/// Makes the index of a signal, from its beginning on.
class IndexMaker
{
public:
    explicit IndexMaker(const SignalDescription &signal)
        : signal(signal), samples(sampleCount(signal)), knownUs(beginOf(signal))
    {
        append(0, knownUs, 0);
    }

    void add(const SignalCapture &capture)
    {
        if (capture.firstSample >= samples)
            throw refusal(QStringLiteral("a capture begins at sample %1, behind the last of %2")
                              .arg(QString::number(capture.firstSample), QString::number(samples)));
        if (capture.firstSample < lastSample)
            throw refusal(QStringLiteral("the capture at sample %1 comes after that at sample %2")
                              .arg(QString::number(capture.firstSample), QString::number(lastSample)));
        const quint64 timeUs = capture.timeUs.value_or(timeAt(capture.firstSample));
        if (timeUs < index.last().timestampUs)
            throw refusal(QStringLiteral("the capture at sample %1 is earlier than what lies before it")
                              .arg(capture.firstSample));
        if (capture.timeUs) {
            knownSample = capture.firstSample;
            knownUs = timeUs;
        }
        if (capture.firstSample == lastSample) // what lies there before it holds for no sample
            index.removeLast();
        append(capture.firstSample, timeUs, capture.tunerFrequencyHz);
    }
    QVector<IndexEntry> finished()
    {
        append(samples, timeAt(samples), index.last().tunerFrequencyHz);
        return index;
    }

private:
    /// The first time that is known may be that of a later sample than the first.
    static quint64 beginOf(const SignalDescription &signal)
    {
        const auto isTimed = [](const SignalCapture &capture) { return capture.timeUs.has_value(); };
        const auto timed = std::ranges::find_if(signal.captures, isTimed);
        if (timed == signal.captures.end())
            return signal.beginUs;
        return *timed->timeUs - std::min(durationUs(timed->firstSample, signal.sampleRateHz), *timed->timeUs);
    }
    quint64 timeAt(quint64 sample) const { return knownUs + durationUs(sample - knownSample, signal.sampleRateHz); }
    void append(quint64 sample, quint64 timeUs, quint64 tunerFrequencyHz)
    {
        const double bandwidthHz = bandwidthOf(signal.sampleRateHz, signal.sampleFormat.complex);
        lastSample = sample;
        index.append({sample * signal.frameBytes(), timeUs, tunerFrequencyHz,
                      static_cast<quint64>(std::llround(signal.sampleRateHz)),
                      static_cast<quint64>(std::llround(bandwidthHz))});
    }

    const SignalDescription &signal;
    const quint64 samples;
    quint64 knownSample = 0; ///< the last one of which somebody says the time
    quint64 knownUs;
    quint64 lastSample = 0;
    QVector<IndexEntry> index;
};

} // namespace

DataRate classOfSamples(double sampleRateHz, bool complex)
{
    if (!std::isfinite(sampleRateHz) || sampleRateHz <= 0)
        throw refusal(QStringLiteral("a sample rate of %1 Hz is impossible").arg(sampleRateHz));
    return narrowestClass(bandwidthOf(sampleRateHz, complex));
}

Record describe(const SignalDescription &signal)
{
    Record record;
    record.rate = classOfSamples(signal.sampleRateHz, signal.sampleFormat.complex);
    IndexMaker index(signal);
    for (const SignalCapture &capture : signal.captures)
        index.add(capture);
    record.index = index.finished();
    record.sizeBytes = signal.sizeBytes;
    record.stopPosition = signal.sizeBytes;
    record.startUs = record.index.first().timestampUs;
    record.stopUs = record.index.last().timestampUs;
    record.format = signal.dataFormat;
    return record;
}

} // namespace installation::recorder
