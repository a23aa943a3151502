#include "installation/recorder/overviewspectrum.h"

#include "installation/recorder/recordererror.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>

namespace installation::recorder
{

namespace
{

static_assert(std::endian::native == std::endian::little, "levels are written as they lie in memory");

constexpr std::size_t lineHeadBytes = 24;

RecorderError refusal(const QString &reason)
{
    return {TQ_KORVE::ekINVALID_VALUE, reason};
}

void requireNumbers(const SpectrumRequest &request)
{
    if (request.fftSize < OverviewSpectrum::smallestFft || request.fftSize > OverviewSpectrum::greatestFft)
        throw refusal(QStringLiteral("a transform of %1 samples; from %2 to %3 are possible")
                          .arg(request.fftSize)
                          .arg(OverviewSpectrum::smallestFft)
                          .arg(OverviewSpectrum::greatestFft));
    if (request.window >= windowCount)
        throw refusal(QStringLiteral("there is no window %1").arg(request.window));
    if (request.lineCount == 0 || request.lineCount > OverviewSpectrum::maximumLines)
        throw refusal(QStringLiteral("%1 lines; from 1 to %2 are possible")
                          .arg(request.lineCount)
                          .arg(OverviewSpectrum::maximumLines));
}

void requireSection(const SpectrumRequest &request, const Record &record, quint64 sampleBytes)
{
    const QString section = QStringLiteral("the section from %1 to %2")
                                .arg(QString::number(request.startPosition), QString::number(request.stopPosition));
    if (request.startPosition >= request.stopPosition)
        throw refusal(section + QStringLiteral(" is empty, or ends before it begins"));
    if (request.stopPosition > record.sizeBytes)
        throw refusal(section + QStringLiteral(" reaches beyond the %1 bytes of the record").arg(record.sizeBytes));
    if (request.startPosition % sampleBytes != 0 || request.stopPosition % sampleBytes != 0)
        throw refusal(section + QStringLiteral(" is not one of whole samples of %1 bytes").arg(sampleBytes));
    const quint64 count = (request.stopPosition - request.startPosition) / sampleBytes;
    if (count < request.fftSize)
        throw refusal(section + QStringLiteral(" has %1 samples, fewer than the transform").arg(count));
}

SpectrumRequest checked(const SpectrumRequest &request, const Record &record)
{
    requireNumbers(request);
    requireSection(request, record, sampleLayout(record).sampleBytes());
    return request;
}

template <typename Integer> char *put(char *target, Integer value)
{
    qToLittleEndian(value, target);
    return target + sizeof value;
}

} // namespace

OverviewSpectrum::OverviewSpectrum(const Record &record, const QString &samplesPath, const SpectrumRequest &request)
    : request(checked(request, record)), times(record), file(File::openForReading(samplesPath)),
      line(times.layout(), static_cast<SpectrumWindow>(request.window), request.fftSize), stretch(line.stretchBytes())
{
}

std::size_t OverviewSpectrum::lineBytes() const
{
    return lineHeadBytes + line.valueCount() * sizeof(float);
}

quint64 OverviewSpectrum::positionOf(quint64 number) const
{
    using Wide = unsigned __int128; // bytes times lines
    const quint64 sampleBytes = times.layout().sampleBytes();
    const quint64 room = (request.stopPosition - request.startPosition - stretch.size()) / sampleBytes;
    const quint64 last = std::max<quint64>(request.lineCount - 1, 1);
    return request.startPosition + static_cast<quint64>(Wide(room) * number / last) * sampleBytes;
}

QByteArray OverviewSpectrum::head() const
{
    const IndexEntry &entry = times.entryAt(request.startPosition);
    QByteArray bytes(64, Qt::Uninitialized);
    char *place = std::copy_n("KORVESPC", 8, bytes.data());
    for (const quint32 value : {version, request.fftSize, request.window, quint32(line.valueCount())})
        place = put(place, value);
    for (const quint64 value : {request.lineCount, request.startPosition, request.stopPosition,
                                static_cast<quint64>(std::llround(times.sampleRateHz(entry))), entry.tunerFrequencyHz})
        place = put(place, value);
    return bytes;
}

void OverviewSpectrum::writeLine(quint64 number, char *target)
{
    const quint64 position = positionOf(number);
    file.readWholeAt(position, stretch.data(), static_cast<qint64>(stretch.size()));
    for (const quint64 value : {number, position, times.timeUs(position)})
        target = put(target, value);
    line.compute(stretch.data(), reinterpret_cast<float *>(target));
}

QByteArray OverviewSpectrum::lines(quint64 first, quint64 count)
{
    const quint64 end = first + std::min(count, request.lineCount - std::min(first, request.lineCount));
    QByteArray bytes(static_cast<int>((end - first) * lineBytes()), Qt::Uninitialized);
    for (quint64 number = first; number < end; ++number)
        writeLine(number, bytes.data() + (number - first) * lineBytes());
    return bytes;
}

} // namespace installation::recorder
