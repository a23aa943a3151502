#pragma once

#include "installation/recorder/samplelayout.h"

namespace installation::recorder
{

/// When the samples of a record were taken, by its index and its sample rate.
///
/// Positions are bytes from the first sample on, times microseconds since 1970, UTC. Between two entries of the index
/// time runs at the sample rate and does not pass the later one: a record may have gaps in time.
class PositionTimes
{
public:
    /// @throws RecorderError when the layout of the samples is not known.
    explicit PositionTimes(const Record &record);

    /// How the receiver was set for the sample at @p position.
    const IndexEntry &entryAt(quint64 position) const;
    /// Of the sample that begins at @p position.
    quint64 timeUs(quint64 position) const;
    /// Of the end of the sample that ends at @p position.
    quint64 endTimeUs(quint64 position) const;
    double sampleRateHz(const IndexEntry &entry) const;
    const SampleLayout &layout() const { return samples; }

private:
    qsizetype entryIndex(quint64 position) const;
    quint64 timeFrom(qsizetype entry, quint64 position) const;

    const SampleLayout samples;
    double exactRateHz = 0; ///< the index has whole Hz only
    QVector<IndexEntry> index; ///< ascending, at least one
};

} // namespace installation::recorder
