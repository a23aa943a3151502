#pragma once

#include "installation/recorder/record.h"

namespace installation::recorder
{

// Bookmarks and history entries: at most one per time stamp.  Errors: throws RecorderError, the list stays as it was.

/// Puts @p note in its place. A note of that time is there already: `ekBOOKMARK_ALREADY_EXISTS`.
void addNote(QVector<Note> &notes, const Note &note, int maximum);
/// Puts @p note at the end, at its time or the next that is free.
void addNoteAfter(QVector<Note> &notes, Note note, int maximum);
void removeNote(QVector<Note> &notes, quint64 timestampUs);

} // namespace installation::recorder
