#pragma once

#include "installation/recorder/record.h"
#include "installation/recorder/recordererror.h"

#include <QSet>

#include <optional>

namespace installation::recorder
{

/// Bookmarks of one record, and entries of its history.
constexpr int maximumNotes = 100000;

// Bookmarks and history entries: at most one per time stamp.  Errors: throws RecorderError, the list stays as it was.

/// Puts @p note in its place. A note of that time is there already: `ekBOOKMARK_ALREADY_EXISTS`.
void addNote(QVector<Note> &notes, const Note &note, int maximum);
/// Puts @p note at the end, at its time or the next that is free.
void addNoteAfter(QVector<Note> &notes, Note note, int maximum);
void removeNote(QVector<Note> &notes, quint64 timestampUs);

/// Many notes at once: does all that can be done, in time that grows with the number of notes but for their sorting.
class NoteChanges
{
public:
    QVector<Note> added{};
    QVector<quint64> removed{};           ///< after what is added
    std::optional<RecorderError> refusal{}; ///< of what has been left out already

    /// Why the first change was refused that could not be made, when others could.
    /// @throws RecorderError that reason when no change could be made; the notes stay as they were.
    std::optional<RecorderError> applyTo(QVector<Note> &notes, int maximum) const;

private:
    std::optional<RecorderError> add(QVector<Note> &notes, QSet<quint64> &times, int maximum) const;
    std::optional<RecorderError> remove(QVector<Note> &notes, QSet<quint64> &times) const;
};

} // namespace installation::recorder
