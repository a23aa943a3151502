#include "installation/recorder/recordparts.h"

#include "installation/recorder/positiontimes.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/sigmfparts.h"

#include <algorithm>
#include <vector>

namespace installation::recorder
{

namespace
{

RecorderError inconsistent(const FilePart &part, const QString &reason)
{
    return {TQ_KORVE::ekCOPY_SEQUENCE_INCONSISTENT,
            QStringLiteral("the section from %1 to %2 %3")
                .arg(QString::number(part.begin), QString::number(part.end), reason)};
}

void require(const FilePart &part, quint64 earliest, const Record &record, quint64 sampleBytes)
{
    if (part.begin >= part.end)
        throw inconsistent(part, QStringLiteral("is empty, or ends before it begins"));
    if (part.end > record.sizeBytes)
        throw inconsistent(part, QStringLiteral("reaches beyond the %1 bytes of the record").arg(record.sizeBytes));
    if (part.begin < earliest)
        throw inconsistent(part, QStringLiteral("begins before the end of the one before it"));
    if (part.begin % sampleBytes != 0 || part.end % sampleBytes != 0)
        throw inconsistent(part, QStringLiteral("is not one of whole samples of %1 bytes").arg(sampleBytes));
}

/// Goes through the sections with the place that each gets in the new record.
template <typename Visit> quint64 placed(const QVector<FilePart> &parts, Visit visit)
{
    quint64 position = 0;
    for (const FilePart &part : parts) {
        visit(part, position);
        position += part.end - part.begin;
    }
    return position;
}

QVector<IndexEntry> indexOf(const Record &record, const QVector<FilePart> &parts, const PositionTimes &times)
{
    QVector<IndexEntry> index;
    const auto append = [&](IndexEntry entry, quint64 position, quint64 timeUs) {
        entry.offsetBytes = position;
        entry.timestampUs = timeUs;
        index.append(entry);
    };
    const quint64 size = placed(parts, [&](const FilePart &part, quint64 position) {
        append(times.entryAt(part.begin), position, times.timeUs(part.begin));
        for (const IndexEntry &entry : record.index)
            if (entry.offsetBytes > part.begin && entry.offsetBytes < part.end)
                append(entry, position + entry.offsetBytes - part.begin, entry.timestampUs);
    });
    const quint64 end = parts.last().end;
    append(times.entryAt(end == record.sizeBytes ? end : end - 1), size, times.endTimeUs(end));
    return index;
}

/// When a section was taken.
struct Span {
    quint64 beginUs;
    quint64 endUs;
    bool hasEnd; ///< what is marked at the end of a record belongs to its last section

    bool contains(quint64 timeUs) const { return timeUs >= beginUs && (timeUs < endUs || (hasEnd && timeUs == endUs)); }
};

QVector<Note> bookmarksOf(const Record &record, const QVector<FilePart> &parts, const PositionTimes &times)
{
    std::vector<Span> spans; // once: there may be a hundred thousand bookmarks
    for (const FilePart &part : parts)
        spans.push_back({times.timeUs(part.begin), times.endTimeUs(part.end), part.end == record.sizeBytes});
    QVector<Note> kept;
    std::ranges::copy_if(record.bookmarks, std::back_inserter(kept), [&](const Note &bookmark) {
        return std::ranges::any_of(spans, [&](const Span &span) { return span.contains(bookmark.timestampUs); });
    });
    return kept;
}

} // namespace

QVector<FilePart> checkedParts(const Record &record, const QVector<FilePart> &parts)
{
    if (parts.isEmpty() || parts.size() > maximumParts)
        throw RecorderError(TQ_KORVE::ekCOPY_SEQUENCE_INCONSISTENT,
                            QStringLiteral("%1 sections to copy; from 1 to %2 are possible").arg(parts.size()).arg(maximumParts));
    const quint64 sampleBytes = sampleLayout(record).sampleBytes();
    QVector<FilePart> checked;
    for (const FilePart &part : parts) {
        require(part, checked.isEmpty() ? 0 : checked.last().end, record, sampleBytes);
        if (!checked.isEmpty() && checked.last().end == part.begin)
            checked.last().end = part.end;
        else
            checked.append(part);
    }
    return checked;
}

Record recordOfParts(const Record &record, const QVector<FilePart> &parts)
{
    const PositionTimes times(record);
    Record copy = record;
    copy.id.clear();
    copy.name.clear();
    copy.history.clear();
    copy.status = KORVE_XML::KORVE_RecordData::IDLE;
    copy.deletable = true;
    copy.loopSizeBytes = 0;
    copy.startPosition = 0;
    copy.index = indexOf(record, parts, times);
    copy.bookmarks = bookmarksOf(record, parts, times);
    copy.sizeBytes = copy.index.last().offsetBytes;
    copy.stopPosition = copy.sizeBytes;
    copy.startUs = copy.index.first().timestampUs;
    copy.stopUs = copy.index.last().timestampUs;
    copy.sigmf = sigmfOfParts(record.sigmf, parts, times);
    return copy;
}

} // namespace installation::recorder
