#pragma once

#include "korvebase/wiretext.h"

#include "objectmodel/korve_recorddata.h"

/// The parts of a record that manager and device describe in structures of the same member names.
namespace KorveCommon::wire
{

/// All but the enumerations, whose numberings only the caller knows.
template <class Structure> void fillPlainMembers(KORVE_XML::KORVE_RecordData &record, const Structure &data)
{
    record.SetRecordID(identifier(data.recordID));
    record.SetRecordName(text(data.recordName));
    record.SetSize(data.size);
    record.SetStartTime(data.startTime);
    record.SetStopTime(data.stopTime);
    record.SetRecordingLoopSize(data.recordingLoopSize);
    record.SetStopPosition(data.stopPosition);
    record.SetStartPosition(data.startPosition);
    record.SetDeletable(data.deletable);
}

template <class Structure> void fillIndex(KORVE_XML::IndexEntry &entry, const Structure &data)
{
    entry.SetRecordOffset(data.recordOffset);
    entry.SetTimestamp(data.timestamp);
    entry.SetTunerFrequency(data.tunerFrequency);
    entry.SetSampleRate(data.sampleRate);
    entry.SetBandwidth(data.bandwidth);
}

template <class Structure> void fillBookmark(KORVE_XML::BookmarkEntry &entry, const Structure &data)
{
    entry.SetTimestamp(data.timestamp);
    entry.SetBookmark(text(data.bookmark));
}

template <class Structure> void fillHistory(KORVE_XML::HistoryEntry &entry, const Structure &data)
{
    entry.SetTimestamp(data.timestamp);
    entry.SetHistoryEntry(text(data.historyEntry));
}

/// Appends one new entry per member of @p sequence to the list that @p listOf yields of @p record.
template <class Entry, class Sequence, class Fill>
void appendEntries(KORVE_XML::KORVE_RecordData &record, QVector<Entry> &(KORVE_XML::KORVE_RecordData::*listOf)(),
                   const Sequence &sequence, const Fill &fill)
{
    if (sequence.length() == 0)
        return; // a mere look at the list would mark it as set
    QVector<Entry> &entries = (record.*listOf)();
    entries.reserve(entries.size() + static_cast<int>(sequence.length()));
    for (CORBA::ULong position = 0; position < sequence.length(); ++position) {
        Entry entry;
        fill(entry, sequence[position]);
        entries.append(std::move(entry));
    }
}

/// Appends one index, bookmark or history entry each per member of the three sequences.
template <class IndexSequence, class BookmarkSequence, class HistorySequence>
void appendLists(KORVE_XML::KORVE_RecordData &record, const IndexSequence &index, const BookmarkSequence &bookmarks,
                 const HistorySequence &history)
{
    using KORVE_XML::KORVE_RecordData;
    const auto asIndex = [](auto &entry, const auto &data) { fillIndex(entry, data); };
    const auto asBookmark = [](auto &entry, const auto &data) { fillBookmark(entry, data); };
    const auto asHistory = [](auto &entry, const auto &data) { fillHistory(entry, data); };
    appendEntries(record, &KORVE_RecordData::GetIndexEntry, index, asIndex);
    appendEntries(record, &KORVE_RecordData::GetBookmarkEntry, bookmarks, asBookmark);
    appendEntries(record, &KORVE_RecordData::GetHistoryEntry, history, asHistory);
}

} // namespace KorveCommon::wire
