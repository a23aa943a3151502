#include "installation/recorder/notes.h"

#include "installation/recorder/recordererror.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

QVector<Note>::iterator find(QVector<Note> &notes, quint64 timestampUs)
{
    return std::find_if(notes.begin(), notes.end(),
                        [timestampUs](const Note &note) { return note.timestampUs == timestampUs; });
}

void requireRoom(const QVector<Note> &notes, int maximum)
{
    if (notes.size() >= maximum)
        throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED,
                            QStringLiteral("the record has %1 entries already").arg(maximum));
}

} // namespace

void addNote(QVector<Note> &notes, const Note &note, int maximum)
{
    if (find(notes, note.timestampUs) != notes.end())
        throw RecorderError(TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS,
                            QStringLiteral("there is a bookmark at %1").arg(note.timestampUs));
    requireRoom(notes, maximum);
    const auto later = std::upper_bound(notes.begin(), notes.end(), note, [](const Note &a, const Note &b) {
        return a.timestampUs < b.timestampUs;
    });
    notes.insert(later, note);
}

void addNoteAfter(QVector<Note> &notes, Note note, int maximum)
{
    requireRoom(notes, maximum);
    while (find(notes, note.timestampUs) != notes.end())
        ++note.timestampUs;
    notes.append(note);
}

void removeNote(QVector<Note> &notes, quint64 timestampUs)
{
    const auto note = find(notes, timestampUs);
    if (note == notes.end())
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE, QStringLiteral("there is no entry at %1").arg(timestampUs));
    notes.erase(note);
}

} // namespace installation::recorder
