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

RecorderError thereAlready(quint64 timestampUs)
{
    return {TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS, QStringLiteral("there is a bookmark at %1").arg(timestampUs)};
}

RecorderError notThere(quint64 timestampUs)
{
    return {TQ_KORVE::ekINVALID_VALUE, QStringLiteral("there is no entry at %1").arg(timestampUs)};
}

RecorderError full(int maximum)
{
    return {TQ_KORVE::ekRESSOURCES_EXHAUSTED, QStringLiteral("the record has %1 entries already").arg(maximum)};
}

bool isEarlier(const Note &a, const Note &b)
{
    return a.timestampUs < b.timestampUs;
}

void requireRoom(const QVector<Note> &notes, int maximum)
{
    if (notes.size() >= maximum)
        throw full(maximum);
}

} // namespace

void addNote(QVector<Note> &notes, const Note &note, int maximum)
{
    if (find(notes, note.timestampUs) != notes.end())
        throw thereAlready(note.timestampUs);
    requireRoom(notes, maximum);
    notes.insert(std::upper_bound(notes.begin(), notes.end(), note, isEarlier), note);
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
        throw notThere(timestampUs);
    notes.erase(note);
}

std::optional<RecorderError> NoteChanges::applyTo(QVector<Note> &notes, int maximum) const
{
    QSet<quint64> times;
    for (const Note &note : notes)
        times.insert(note.timestampUs);
    QVector<Note> changed = notes;
    const auto notAdded = add(changed, times, maximum);
    const auto notRemoved = remove(changed, times);
    const auto first = refusal ? refusal : notAdded ? notAdded : notRemoved;
    if (first && changed == notes)
        throw *first;
    std::stable_sort(changed.begin(), changed.end(), isEarlier);
    notes = changed;
    return first;
}

std::optional<RecorderError> NoteChanges::add(QVector<Note> &notes, QSet<quint64> &times, int maximum) const
{
    std::optional<RecorderError> first;
    for (const Note &note : added) {
        if (times.contains(note.timestampUs)) {
            first = first.value_or(thereAlready(note.timestampUs));
        } else if (notes.size() >= maximum) {
            first = first.value_or(full(maximum));
        } else {
            times.insert(note.timestampUs);
            notes.append(note);
        }
    }
    return first;
}

std::optional<RecorderError> NoteChanges::remove(QVector<Note> &notes, QSet<quint64> &times) const
{
    std::optional<RecorderError> first;
    QSet<quint64> gone;
    for (const quint64 timestampUs : removed) {
        if (times.remove(timestampUs))
            gone.insert(timestampUs);
        else
            first = first.value_or(notThere(timestampUs));
    }
    const auto isGone = [&](const Note &note) { return gone.contains(note.timestampUs); };
    notes.erase(std::remove_if(notes.begin(), notes.end(), isGone), notes.end());
    return first;
}

} // namespace installation::recorder
