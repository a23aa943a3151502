#include "installation/recorder/positiontimes.h"

#include <algorithm>
#include <cmath>

namespace installation::recorder
{

namespace
{

double sampleRateOf(const Record &record)
{
    const QJsonObject global = record.sigmf.value(QLatin1String("global")).toObject();
    return global.value(QLatin1String("core:sample_rate")).toDouble();
}

/// A document of foreign hand may have its entries in any order, or none.
QVector<IndexEntry> ascending(const Record &record)
{
    QVector<IndexEntry> index = record.index;
    if (index.isEmpty())
        index.append({0, record.startUs, 0, 0, 0});
    std::stable_sort(index.begin(), index.end(),
                     [](const IndexEntry &a, const IndexEntry &b) { return a.offsetBytes < b.offsetBytes; });
    return index;
}

} // namespace

PositionTimes::PositionTimes(const Record &record)
    : samples(sampleLayout(record)), exactRateHz(sampleRateOf(record)), index(ascending(record))
{
}

/// The last that begins at @p position or before it, else the first.
qsizetype PositionTimes::entryIndex(quint64 position) const
{
    const auto behind =
        std::upper_bound(index.cbegin(), index.cend(), position,
                         [](quint64 place, const IndexEntry &entry) { return place < entry.offsetBytes; });
    return behind == index.cbegin() ? 0 : behind - index.cbegin() - 1;
}

const IndexEntry &PositionTimes::entryAt(quint64 position) const
{
    return index.at(static_cast<int>(entryIndex(position)));
}

double PositionTimes::sampleRateHz(const IndexEntry &entry) const
{
    const auto wholeRateHz = static_cast<double>(entry.sampleRateHz);
    return std::abs(exactRateHz - wholeRateHz) <= 0.5 || entry.sampleRateHz == 0 ? exactRateHz : wholeRateHz;
}

quint64 PositionTimes::timeFrom(qsizetype number, quint64 position) const
{
    const IndexEntry &entry = index.at(static_cast<int>(number));
    const double rateHz = sampleRateHz(entry);
    if (position <= entry.offsetBytes || !(rateHz > 0))
        return entry.timestampUs;
    const auto count = static_cast<long double>((position - entry.offsetBytes) / samples.sampleBytes());
    const quint64 timeUs = entry.timestampUs + static_cast<quint64>(std::llround(count * 1'000'000.0L / rateHz));
    const quint64 nextUs = number + 1 < index.size() ? index.at(static_cast<int>(number + 1)).timestampUs : timeUs;
    return nextUs >= entry.timestampUs ? std::min(timeUs, nextUs) : timeUs;
}

quint64 PositionTimes::timeUs(quint64 position) const
{
    return timeFrom(entryIndex(position), position);
}

quint64 PositionTimes::endTimeUs(quint64 position) const
{
    return timeFrom(entryIndex(position > 0 ? position - 1 : 0), position);
}

} // namespace installation::recorder
