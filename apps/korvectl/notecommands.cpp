#include "apps/korvectl/notecommands.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/recordscale.h"
#include "apps/korvectl/recordview.h"
#include "apps/korvectl/units.h"

#include <algorithm>

namespace korvectl
{

namespace
{

using Handler = AdminSession::Handler;
using KORVE_XML::KORVE_RecordData;

/// As 10000 and the kind of the exception that a device answers, which a list of bookmarks does not bring along.
constexpr unsigned long bookmarkExists = 10034;

ExitCode printNotes(const CommandLine &line, const QVector<Note> &notes, quint64 beginUs)
{
    print(line.json ? jsonText(notesArray(notes)) : notesTable(notes, beginUs));
    return ExitCode::Success;
}

ExitCode reportAt(const CommandLine &line, const QString &sentence, quint64 timestampUs)
{
    const QString time = units::exactInstant(timestampUs);
    print(line.json ? jsonText(QJsonObject{{QStringLiteral("device"), line.device},
                                           {QStringLiteral("record"), line.record},
                                           {QStringLiteral("time"), time},
                                           {QStringLiteral("timeUs"), jsonTime(timestampUs)}})
                    : sentence.arg(time) + u'\n');
    return ExitCode::Success;
}

QStringList listing(const char *what, const CommandLine &line)
{
    return {QStringLiteral("record"), QLatin1String(what), QStringLiteral("list"), line.device, line.record};
}

bool hasNoteAt(const QVector<Note> &notes, quint64 timestampUs)
{
    return std::any_of(notes.begin(), notes.end(),
                       [timestampUs](const Note &note) { return note.timestampUs == timestampUs; });
}

Handler::Bookmarks bookmarkAt(quint64 timestampUs, const QString &text)
{
    KORVE_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(timestampUs);
    bookmark.SetBookmark(text);
    return {bookmark};
}

} // namespace

ExitCode listHistory(const CommandLine &line)
{
    return printNotes(line, historyOf(AdminSession(line).record(Flow::History)), 0);
}

ExitCode addToHistory(const CommandLine &line)
{
    AdminSession admin(line);
    admin.change(Flow::History, QStringLiteral("adding to the history of %1").arg(admin.recordWords()),
                 listing("history", line),
                 [&](Handler &handler) { return handler.SaveHistoryEntryToKorve(line.device, line.record, line.text); });
    print(line.json ? jsonText(QJsonObject{{QStringLiteral("device"), line.device},
                                           {QStringLiteral("record"), line.record},
                                           {QStringLiteral("text"), line.text}})
                    : QStringLiteral("The history of %1 has the entry.\n").arg(admin.recordWords()));
    return ExitCode::Success;
}

ExitCode removeFromHistory(const CommandLine &line)
{
    AdminSession admin(line);
    const KORVE_RecordData record = admin.record(Flow::History);
    const quint64 timestampUs = RecordScale(record).instantOf(line.moment);
    if (!hasNoteAt(historyOf(record), timestampUs))
        throw Failure(ExitCode::Refused, QStringLiteral("The history of %1 has no entry of %2.")
                                             .arg(admin.recordWords(), units::exactInstant(timestampUs)));
    admin.change(Flow::History, QStringLiteral("removing from the history of %1").arg(admin.recordWords()),
                 listing("history", line), [&](Handler &handler) {
                     return handler.DeleteHistoryEntryFromKorve(line.device, line.record, timestampUs);
                 });
    return reportAt(line, QStringLiteral("The entry of %1 is removed."), timestampUs);
}

ExitCode listBookmarks(const CommandLine &line)
{
    const KORVE_RecordData record = AdminSession(line).record(Flow::GetBookmark);
    return printNotes(line, bookmarksOf(record), record.GetStartTime());
}

ExitCode addBookmark(const CommandLine &line)
{
    AdminSession admin(line);
    const QString words = QStringLiteral("adding a bookmark to %1").arg(admin.recordWords());
    const KORVE_RecordData record = admin.record(Flow::AddBookmark);
    const quint64 timestampUs = RecordScale(record).instantOf(line.moment);
    if (hasNoteAt(bookmarksOf(record), timestampUs))
        throw failureOf({bookmarkExists, false}, {Flow::AddBookmark, words, line.record});
    admin.change(Flow::AddBookmark, words, listing("bookmarks", line), [&](Handler &handler) {
        return handler.SaveBookmarksToKorve(line.device, line.record, bookmarkAt(timestampUs, line.text));
    });
    return reportAt(line, QStringLiteral("There is a bookmark at %1."), timestampUs);
}

ExitCode removeBookmark(const CommandLine &line)
{
    AdminSession admin(line);
    const KORVE_RecordData record = admin.record(Flow::RemoveBookmark);
    const quint64 timestampUs = RecordScale(record).instantOf(line.moment);
    if (!hasNoteAt(bookmarksOf(record), timestampUs))
        throw Failure(ExitCode::Refused, QStringLiteral("There is no bookmark of %1 at %2.")
                                             .arg(admin.recordWords(), units::exactInstant(timestampUs)));
    admin.change(Flow::RemoveBookmark, QStringLiteral("removing a bookmark of %1").arg(admin.recordWords()),
                 listing("bookmarks", line), [&](Handler &handler) {
                     return handler.DeleteBookmarksFromKorve(line.device, line.record,
                                                             bookmarkAt(timestampUs, QString::fromLatin1("")));
                 });
    return reportAt(line, QStringLiteral("The bookmark at %1 is removed."), timestampUs);
}

} // namespace korvectl
