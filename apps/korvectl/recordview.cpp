#include "apps/korvectl/recordview.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/listing.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"

namespace korvectl
{

namespace
{

using KORVE_XML::KORVE_RecordData;

QString hertz(quint64 count)
{
    return QStringLiteral("%1 Hz").arg(count);
}

QString sinceBegin(quint64 us, quint64 beginUs)
{
    const bool isBefore = static_cast<qint64>(us - beginUs) < 0; // either may lie before 1970
    return isBefore ? QLatin1Char('-') + units::duration(beginUs - us)
                    : QLatin1Char('+') + units::duration(us - beginUs);
}

Table propertiesOf(const QString &device, const KORVE_RecordData &record)
{
    Table table({{QStringLiteral("PROPERTY")}, {.title = QStringLiteral("VALUE"), .mayBeCut = true}});
    table.addRow({QStringLiteral("device"), device});
    table.addRow({QStringLiteral("record"), record.GetRecordID()});
    table.addRow({QStringLiteral("comment"), record.GetRecordName()});
    table.addRow({QStringLiteral("status"), record.GetRecordStatusAsString()});
    table.addRow({QStringLiteral("deletable"), record.GetDeletable() ? QStringLiteral("yes") : QStringLiteral("no")});
    table.addRow({QStringLiteral("begin"), units::exactInstant(record.GetStartTime())});
    table.addRow({QStringLiteral("end"), units::exactInstant(record.GetStopTime())});
    table.addRow({QStringLiteral("duration"), units::duration(durationUs(record))});
    table.addRow({QStringLiteral("size"), QStringLiteral("%1 (%2 bytes)")
                                              .arg(units::bytes(record.GetSize()), QString::number(record.GetSize()))});
    table.addRow({QStringLiteral("data rate"), record.GetDataRateAsString()});
    table.addRow({QStringLiteral("data format"), record.GetDataFormatAsString()});
    if (record.GetRecordingLoopSize() > 0)
        table.addRow({QStringLiteral("loop"), units::bytes(record.GetRecordingLoopSize())});
    return table;
}

Table indexTable(const KORVE_RecordData &record)
{
    Table table({{QStringLiteral("FROM BYTE"), Qt::AlignRight},
                 {QStringLiteral("TIME (UTC)")},
                 {QStringLiteral("FREQUENCY"), Qt::AlignRight},
                 {QStringLiteral("SAMPLE RATE"), Qt::AlignRight},
                 {QStringLiteral("BANDWIDTH"), Qt::AlignRight}});
    for (const auto &entry : record.GetIndexEntry())
        table.addRow({QString::number(entry.GetRecordOffset()), units::exactInstant(entry.GetTimestamp()),
                      hertz(entry.GetTunerFrequency()), hertz(entry.GetSampleRate()), hertz(entry.GetBandwidth())});
    return table;
}

QJsonArray indexArray(const KORVE_RecordData &record)
{
    QJsonArray index;
    for (const auto &entry : record.GetIndexEntry())
        index.append(QJsonObject{{QStringLiteral("offsetBytes"), jsonNumber(entry.GetRecordOffset())},
                                 {QStringLiteral("timeUs"), jsonTime(entry.GetTimestamp())},
                                 {QStringLiteral("frequencyHz"), jsonNumber(entry.GetTunerFrequency())},
                                 {QStringLiteral("sampleRateHz"), jsonNumber(entry.GetSampleRate())},
                                 {QStringLiteral("bandwidthHz"), jsonNumber(entry.GetBandwidth())}});
    return index;
}

QString titled(const char *title, const QString &table)
{
    return QStringLiteral("\n%1:\n%2").arg(QLatin1String(title), table);
}

} // namespace

QVector<Note> bookmarksOf(const KORVE_RecordData &record)
{
    QVector<Note> notes;
    for (const auto &entry : record.GetBookmarkEntry())
        notes << Note{entry.GetTimestamp(), entry.GetBookmark()};
    return notes;
}

QVector<Note> historyOf(const KORVE_RecordData &record)
{
    QVector<Note> notes;
    for (const auto &entry : record.GetHistoryEntry())
        notes << Note{entry.GetTimestamp(), entry.GetHistoryEntry()};
    return notes;
}

QString notesTable(const QVector<Note> &notes, quint64 beginUs)
{
    const bool hasOffsets = beginUs != 0;
    QVector<Table::Column> columns{{QStringLiteral("TIME (UTC)")}};
    if (hasOffsets)
        columns << Table::Column{QStringLiteral("AFTER BEGIN"), Qt::AlignRight};
    Table table(columns << Table::Column{.title = QStringLiteral("TEXT"), .mayBeCut = true});
    for (const Note &note : notes) {
        QStringList cells{units::exactInstant(note.timestampUs)};
        if (hasOffsets)
            cells << sinceBegin(note.timestampUs, beginUs);
        table.addRow(cells << note.text);
    }
    return table.text(resultWidth());
}

QJsonArray notesArray(const QVector<Note> &notes)
{
    QJsonArray array;
    for (const Note &note : notes)
        array.append(QJsonObject{{QStringLiteral("time"), units::exactInstant(note.timestampUs)},
                                 {QStringLiteral("timeUs"), jsonTime(note.timestampUs)},
                                 {QStringLiteral("text"), note.text}});
    return array;
}

QString recordText(const QString &device, const KORVE_RecordData &record)
{
    QString text = propertiesOf(device, record).text(resultWidth());
    if (!record.GetIndexEntry().isEmpty())
        text += titled("Receiver", indexTable(record).text());
    if (!record.GetBookmarkEntry().isEmpty())
        text += titled("Bookmarks", notesTable(bookmarksOf(record), record.GetStartTime()));
    if (!record.GetHistoryEntry().isEmpty())
        text += titled("History", notesTable(historyOf(record), 0));
    return text;
}

QJsonObject recordDetails(const QString &device, const KORVE_RecordData &record)
{
    QJsonObject object = recordObject({device, record});
    object.insert(QStringLiteral("index"), indexArray(record));
    object.insert(QStringLiteral("bookmarks"), notesArray(bookmarksOf(record)));
    object.insert(QStringLiteral("history"), notesArray(historyOf(record)));
    return object;
}

} // namespace korvectl
