#include "installation/recorder/recorddocument.h"

#include "installation/recorder/jsonmembers.h"
#include "installation/recorder/recordererror.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace installation::recorder
{

namespace
{

using KORVE_XML::KORVE_RecordData;

const QString extensionName = QStringLiteral("korve");
const QString extensionVersion = QStringLiteral("1.0.0");

/// The members of "global" that hold numbers of 64 bits.
struct CountMember {
    const char *key;
    quint64 RecordSummary::*member;
};
constexpr CountMember countMembers[]{
    {"korve:size", &RecordSummary::sizeBytes},
    {"korve:start_time", &RecordSummary::startUs},
    {"korve:stop_time", &RecordSummary::stopUs},
    {"korve:loop_size", &RecordSummary::loopSizeBytes},
    {"korve:start_position", &RecordSummary::startPosition},
    {"korve:stop_position", &RecordSummary::stopPosition},
};

/// The same of an index entry.
struct IndexMember {
    const char *key;
    quint64 IndexEntry::*member;
};
constexpr IndexMember indexMembers[]{
    {"offset", &IndexEntry::offsetBytes},
    {"timestamp", &IndexEntry::timestampUs},
    {"tuner_frequency", &IndexEntry::tunerFrequencyHz},
    {"sample_rate", &IndexEntry::sampleRateHz},
    {"bandwidth", &IndexEntry::bandwidthHz},
};

/// Asked for names only, which touch nothing in it.
const KORVE_RecordData &vocabulary()
{
    static const KORVE_RecordData record;
    return record;
}

QJsonArray toJson(const QVector<IndexEntry> &index)
{
    QJsonArray list;
    for (const IndexEntry &entry : index) {
        QJsonObject object;
        for (const auto &[key, member] : indexMembers)
            object[QLatin1String(key)] = JsonMembers::fromCount(entry.*member);
        list.append(object);
    }
    return list;
}

QJsonArray toJson(const QVector<Note> &notes)
{
    QJsonArray list;
    for (const Note &note : notes)
        list.append(QJsonObject{{QStringLiteral("timestamp"), JsonMembers::fromCount(note.timestampUs)},
                                {QStringLiteral("text"), note.text}});
    return list;
}

QVector<IndexEntry> readIndex(const QVector<QJsonObject> &list)
{
    QVector<IndexEntry> index;
    for (const QJsonObject &object : list) {
        IndexEntry entry;
        for (const auto &[key, member] : indexMembers)
            entry.*member = JsonMembers(object).count(QLatin1String(key));
        index.append(entry);
    }
    return index;
}

QVector<Note> readNotes(const QVector<QJsonObject> &list)
{
    QVector<Note> notes;
    for (const QJsonObject &object : list) {
        const JsonMembers members(object);
        notes.append({members.count(QStringLiteral("timestamp")), members.text(QStringLiteral("text"))});
    }
    return notes;
}

/// The list of extensions that @p global needs to be understood, with ours among them.
QJsonArray extensions(const QJsonObject &global)
{
    QJsonArray kept;
    for (const QJsonValue extension : global.value(QLatin1String("core:extensions")).toArray())
        if (extension.toObject().value(QLatin1String("name")) != extensionName)
            kept.append(extension);
    kept.append(QJsonObject{{QStringLiteral("name"), extensionName},
                            {QStringLiteral("version"), extensionVersion},
                            {QStringLiteral("optional"), true}});
    return kept;
}

/// The code that @p name of the member @p key stands for.
template <typename Enumeration>
Enumeration known(Enumeration code, Enumeration invalid, const char *key, const QString &name)
{
    if (code == invalid)
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED,
                            QStringLiteral("\"%1\" is \"%2\", which is not known").arg(QLatin1String(key), name));
    return code;
}

void readCodes(const JsonMembers &global, RecordSummary &record)
{
    const auto name = [&](const char *key) { return global.text(QLatin1String(key)); };
    const KORVE_RecordData &words = vocabulary();
    const QString status = name("korve:status");
    const QString format = name("korve:data_format");
    const QString rate = name("korve:data_rate");
    record.status =
        known(words.NameToRecordStatus(status), words.GetInvalidRecordStatus(), "korve:status", status);
    record.format =
        known(words.NameToDataFormat(format), words.GetInvalidDataFormat(), "korve:data_format", format);
    record.rate = known(words.NameToDataRate(rate), words.GetInvalidDataRate(), "korve:data_rate", rate);
}

Record readRecord(const JsonMembers &global)
{
    Record record;
    record.id = global.text(QStringLiteral("korve:record_id"));
    record.name = global.text(QStringLiteral("korve:name"));
    record.deletable = global.truth(QStringLiteral("korve:deletable"));
    for (const auto &[key, member] : countMembers)
        record.*member = global.count(QLatin1String(key));
    readCodes(global, record);
    record.index = readIndex(global.list(QStringLiteral("korve:index")));
    record.bookmarks = readNotes(global.list(QStringLiteral("korve:bookmarks")));
    record.history = readNotes(global.list(QStringLiteral("korve:history")));
    return record;
}

} // namespace

QByteArray toDocument(const Record &record)
{
    QJsonObject sigmf = record.sigmf;
    QJsonObject global = sigmf.value(QLatin1String("global")).toObject();
    global[QLatin1String("core:description")] = record.name;
    global[QLatin1String("core:extensions")] = extensions(global);
    global[QLatin1String("korve:record_id")] = record.id;
    global[QLatin1String("korve:name")] = record.name;
    global[QLatin1String("korve:deletable")] = record.deletable;
    for (const auto &[key, member] : countMembers)
        global[QLatin1String(key)] = JsonMembers::fromCount(record.*member);
    global[QLatin1String("korve:status")] = vocabulary().RecordStatusToName(record.status);
    global[QLatin1String("korve:data_format")] = vocabulary().DataFormatToName(record.format);
    global[QLatin1String("korve:data_rate")] = vocabulary().DataRateToName(record.rate);
    global[QLatin1String("korve:index")] = toJson(record.index);
    global[QLatin1String("korve:bookmarks")] = toJson(record.bookmarks);
    global[QLatin1String("korve:history")] = toJson(record.history);
    sigmf[QLatin1String("global")] = global;
    return QJsonDocument(sigmf).toJson();
}

Record fromDocument(const QByteArray &bytes, const QString &name)
{
    const QJsonObject sigmf = JsonMembers::document(bytes, name);
    try {
        Record record = readRecord(JsonMembers(JsonMembers(sigmf).members(QStringLiteral("global"))));
        record.sigmf = sigmf;
        return record;
    } catch (const RecorderError &error) {
        throw RecorderError(error.kind(), QStringLiteral("%1: %2").arg(name, error.text()));
    }
}

bool isOurDocument(const QJsonObject &sigmf)
{
    return sigmf.value(QLatin1String("global")).toObject().contains(QLatin1String("korve:record_id"));
}

} // namespace installation::recorder
