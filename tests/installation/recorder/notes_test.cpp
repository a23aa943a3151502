#include "installation/recorder/notes.h"

#include <gmock/gmock.h>

using namespace installation::recorder;
using testing::ElementsAre;

namespace
{

QVector<Note> notesAt(std::initializer_list<quint64> times)
{
    QVector<Note> notes;
    for (const quint64 time : times)
        notes.append({time, QString::number(time)});
    return notes;
}

std::vector<quint64> timesOf(const QVector<Note> &notes)
{
    std::vector<quint64> times;
    for (const Note &note : notes)
        times.push_back(note.timestampUs);
    return times;
}

} // namespace

TEST(NoteChanges, PutNotesInTheirPlaces)
{
    QVector<Note> notes = notesAt({10, 30});
    EXPECT_FALSE(NoteChanges{.added = notesAt({40, 20})}.applyTo(notes, 9));
    EXPECT_THAT(timesOf(notes), ElementsAre(10, 20, 30, 40));
    EXPECT_EQ(notes[1].text, QLatin1String("20"));
}

TEST(NoteChanges, AreMadeBehindOneThatCannot)
{
    QVector<Note> notes = notesAt({10});
    const auto refusal = NoteChanges{.added = notesAt({10, 20, 20, 30})}.applyTo(notes, 9);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->kind(), TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS);
    EXPECT_THAT(timesOf(notes), ElementsAre(10, 20, 30));
}

TEST(NoteChanges, FailWhenNoneCanBeMade)
{
    QVector<Note> notes = notesAt({20, 10});
    EXPECT_THROW((NoteChanges{.added = notesAt({10, 20})}.applyTo(notes, 9)), RecorderError);
    EXPECT_THROW((NoteChanges{.added = notesAt({30})}.applyTo(notes, 2)), RecorderError);
    EXPECT_THROW((NoteChanges{.removed = {30}}.applyTo(notes, 9)), RecorderError);
    const RecorderError tooLong(TQ_KORVE::ekINVALID_VALUE, QStringLiteral("too long"));
    EXPECT_THROW((NoteChanges{.refusal = tooLong}.applyTo(notes, 9)), RecorderError);
    EXPECT_THAT(timesOf(notes), ElementsAre(20, 10));
}

TEST(NoteChanges, LeaveOutWhatIsTooMuch)
{
    QVector<Note> notes = notesAt({10});
    const auto refusal = NoteChanges{.added = notesAt({20, 30})}.applyTo(notes, 2);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->kind(), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    EXPECT_THAT(timesOf(notes), ElementsAre(10, 20));
}

TEST(NoteChanges, RemoveWhatIsThere)
{
    QVector<Note> notes = notesAt({10, 20, 30});
    const auto refusal = NoteChanges{.removed = {30, 15, 10}}.applyTo(notes, 9);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->kind(), TQ_KORVE::ekINVALID_VALUE);
    EXPECT_THAT(timesOf(notes), ElementsAre(20));
}
