#include "apps/korvectl/recordscale.h"

#include "apps/korvectl/failure.h"
#include "apps/korvectl/listing.h"

#include <QDateTime>

#include <cmath>
#include <limits>

namespace korvectl
{

namespace
{

using KORVE_XML::KORVE_RecordData;

constexpr double usOfSecond = 1e6;

quint64 rateOf(const KORVE_RecordData &record)
{
    return record.GetIndexEntry().isEmpty() ? 0 : record.GetIndexEntry().first().GetSampleRate();
}

/// What the record does not tell, but follows from the other quantities; 1 where it cannot be so.
quint64 sampleBytesOf(quint64 sizeBytes, quint64 durationUs, quint64 rateHz)
{
    if (durationUs == 0 || rateHz == 0)
        return 1;
    const double samples = static_cast<double>(durationUs) * static_cast<double>(rateHz) / usOfSecond;
    const auto bytes = static_cast<quint64>(std::llround(static_cast<double>(sizeBytes) / samples));
    return bytes > 0 && sizeBytes % bytes == 0 ? bytes : 1;
}

} // namespace

RecordScale::RecordScale(const KORVE_RecordData &record)
    : beginUs(record.GetStartTime()), sizeBytes(record.GetSize()),
      durationUs(korvectl::durationUs(record)), rateHz(rateOf(record)),
      bytesOfSample(sampleBytesOf(sizeBytes, durationUs, rateHz))
{
}

quint64 RecordScale::bytesAt(const Position &position) const
{
    if (!position.isTime)
        return position.amount;
    if (durationUs == 0)
        throw Failure(ExitCode::Usage, QStringLiteral("The record has no duration; give bytes instead of times."));
    if (position.amount == durationUs)
        return sizeBytes; // its rate may be a little off
    const double bytesOfSecond = rateHz != 0 ? static_cast<double>(rateHz * bytesOfSample)
                                             : static_cast<double>(sizeBytes) * usOfSecond /
                                                   static_cast<double>(durationUs);
    const double exact = static_cast<double>(position.amount) / usOfSecond * bytesOfSecond;
    constexpr double roundingError = 1e-6; // of 0.3 s as a double, and the like
    return static_cast<quint64>(std::floor(exact / static_cast<double>(bytesOfSample) + roundingError)) * bytesOfSample;
}

ByteRange RecordScale::rangeOf(const Section &section) const
{
    const ByteRange range{section.begin ? bytesAt(*section.begin) : 0,
                          section.end ? bytesAt(*section.end) : sizeBytes};
    const QString words = QStringLiteral("The section from byte %1 to %2 ").arg(range.begin).arg(range.end);
    if (range.begin >= range.end)
        throw Failure(ExitCode::Usage, words + QStringLiteral("is empty."));
    if (range.end > sizeBytes)
        throw Failure(ExitCode::Usage, words + QStringLiteral("ends behind the record, which has %1 bytes.").arg(sizeBytes));
    return range;
}

QVector<ByteRange> RecordScale::rangesOf(const QVector<Section> &sections) const
{
    QVector<ByteRange> ranges;
    for (const Section &section : sections)
        ranges << rangeOf(section);
    return sections.isEmpty() ? QVector<ByteRange>{{0, sizeBytes}} : ranges;
}

quint64 RecordScale::instantOf(const Moment &moment) const
{
    switch (moment.kind) {
    case Moment::Kind::Absolute:
        return moment.us;
    case Moment::Kind::AfterBegin:
        if (moment.us > std::numeric_limits<quint64>::max() - beginUs)
            throw Failure(ExitCode::Usage, QStringLiteral("There is no such time after the record's beginning."));
        return beginUs + moment.us;
    case Moment::Kind::Now:
        return static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()) * 1000;
    }
    return moment.us;
}

} // namespace korvectl
