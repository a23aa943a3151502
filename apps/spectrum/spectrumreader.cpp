#include "apps/spectrum/spectrumreader.h"

#include <QString>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace apps
{

namespace
{

constexpr qsizetype headBytes = 64;
constexpr qsizetype lineHeadBytes = 24;
constexpr quint32 version = 1;
constexpr quint32 greatestFft = 1 << 20;
constexpr quint32 windowCount = 5;
constexpr quint64 maximumLines = 10'000'000;

/// Takes little-endian numbers from bytes that are there.
class Numbers
{
public:
    explicit Numbers(const char *place) : place(place) {}

    template <typename Number> Number next()
    {
        const auto number = qFromLittleEndian<Number>(place);
        place += sizeof number;
        return number;
    }

private:
    const char *place;
};

void require(bool holds, const char *expectation)
{
    if (!holds)
        throw SpectrumError(QStringLiteral("no overview spectrum: %1").arg(QLatin1String(expectation)));
}

void check(const SpectrumHead &head)
{
    require(head.fftSize >= 2 && head.fftSize <= greatestFft, "a transform of an impossible length");
    require(head.window < windowCount, "a window that is not known");
    require(head.valuesPerLine == head.fftSize || head.valuesPerLine == head.fftSize / 2 + 1,
            "lines that are not of the transform's length");
    require(head.lineCount >= 1 && head.lineCount <= maximumLines, "an impossible number of lines");
    require(head.startPosition < head.stopPosition, "an empty section");
}

} // namespace

void SpectrumReader::add(const QByteArray &bytes)
{
    buffer.remove(0, static_cast<int>(consumed));
    consumed = 0;
    buffer += bytes;
    if (!spectrumHead)
        readHead();
    requireNothingBehind();
}

void SpectrumReader::readHead()
{
    const auto compared = static_cast<std::size_t>(std::min<qsizetype>(pending(), 8));
    require(std::memcmp(place(), "KORVESPC", compared) == 0, "it begins otherwise");
    if (pending() < headBytes)
        return;
    Numbers numbers(place() + 8);
    require(numbers.next<quint32>() == version, "a version that is not known");
    SpectrumHead head;
    for (quint32 *value : {&head.fftSize, &head.window, &head.valuesPerLine})
        *value = numbers.next<quint32>();
    for (quint64 *value :
         {&head.lineCount, &head.startPosition, &head.stopPosition, &head.sampleRateHz, &head.tunerFrequencyHz})
        *value = numbers.next<quint64>();
    check(head);
    spectrumHead = head;
    lastPosition = head.startPosition;
    consumed = headBytes;
}

qsizetype SpectrumReader::lineBytes() const
{
    return lineHeadBytes + qsizetype(spectrumHead->valuesPerLine) * qsizetype(sizeof(float));
}

void SpectrumReader::requireNothingBehind() const
{
    if (spectrumHead)
        require(quint64(pending()) <= (spectrumHead->lineCount - linesTaken) * quint64(lineBytes()),
                "bytes behind the last line");
}

std::optional<SpectrumLine> SpectrumReader::next()
{
    if (!spectrumHead || isComplete() || pending() < lineBytes())
        return {};
    Numbers numbers(place());
    SpectrumLine line;
    for (quint64 *value : {&line.number, &line.position, &line.timestampUs})
        *value = numbers.next<quint64>();
    require(line.number == linesTaken, "lines that are not in order");
    require(line.position >= lastPosition && line.position < spectrumHead->stopPosition, "a line from elsewhere");
    line.levels.reserve(static_cast<int>(spectrumHead->valuesPerLine));
    for (quint32 i = 0; i < spectrumHead->valuesPerLine; ++i) {
        line.levels.append(numbers.next<float>());
        require(std::isfinite(line.levels.last()), "a level that is no number");
    }
    lastPosition = line.position;
    consumed += lineBytes();
    ++linesTaken;
    return line;
}

void SpectrumReader::requireComplete() const
{
    if (!spectrumHead)
        throw SpectrumError(QStringLiteral("the spectrum ended within its head"));
    if (!isComplete())
        throw SpectrumError(
            QStringLiteral("the spectrum ended after %1 of %2 lines").arg(linesTaken).arg(spectrumHead->lineCount));
}

} // namespace apps
