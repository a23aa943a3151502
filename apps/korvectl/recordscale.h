#pragma once

#include "apps/korvectl/arguments.h"

#include "objectmodel/korve_recorddata.h"

#include <QVector>

namespace korvectl
{

/// A part of a record's samples in bytes; without its end.
struct ByteRange {
    quint64 begin = 0;
    quint64 end = 0;

    bool operator==(const ByteRange &) const = default;
};

/// Where times and bytes of a record are.
///
/// Errors: throws Failure, of usage, for what is not within the record.
class RecordScale
{
public:
    explicit RecordScale(const KORVE_XML::KORVE_RecordData &record);

    /// How many bytes lie before @p position. A time stands for the sample that begins then, or for the last one before.
    quint64 bytesAt(const Position &position) const;
    ByteRange rangeOf(const Section &section) const;
    /// All of the record for no sections.
    QVector<ByteRange> rangesOf(const QVector<Section> &sections) const;
    /// Since 1970.
    quint64 instantOf(const Moment &moment) const;

    quint64 sampleRateHz() const { return rateHz; }
    quint64 sampleBytes() const { return bytesOfSample; }

private:
    quint64 beginUs;
    quint64 sizeBytes;
    quint64 durationUs;
    quint64 rateHz; ///< 0: the record does not say
    quint64 bytesOfSample;
};

} // namespace korvectl
