#pragma once

#include "objectmodel/korve_recorddata.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

/// One record as text for standard output, with the end of its last line.
namespace korvectl
{

/// A bookmark, or an entry of a history.
struct Note {
    quint64 timestampUs = 0;
    QString text;
};

QVector<Note> bookmarksOf(const KORVE_XML::KORVE_RecordData &record);
QVector<Note> historyOf(const KORVE_XML::KORVE_RecordData &record);

/// With the time since @p beginUs, where that is not 0.
QString notesTable(const QVector<Note> &notes, quint64 beginUs);
/// Objects with "time", "timeUs" and "text".
QJsonArray notesArray(const QVector<Note> &notes);

/// All that is known of it.
QString recordText(const QString &device, const KORVE_XML::KORVE_RecordData &record);
/// As recordObject(), with "index", "bookmarks" and "history".
QJsonObject recordDetails(const QString &device, const KORVE_XML::KORVE_RecordData &record);

} // namespace korvectl
