#include "installation/recorder/catalogue.h"

#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/catalogue";
constexpr int version = 1;

/// SQLite's integers are signed; the bits are what counts.
QVariant bits(quint64 value)
{
    return QVariant::fromValue(static_cast<qlonglong>(value));
}

quint64 count(const QSqlQuery &query, int column)
{
    return static_cast<quint64>(query.value(column).toLongLong());
}

/// Goes to the next row. A file that cannot be read any further is not the end of the rows.
bool next(QSqlQuery &query)
{
    const bool isThere = query.next();
    if (!isThere && query.lastError().isValid())
        throw Catalogue::Error(query.lastError().text().toStdString());
    return isThere;
}

RecordSummary summary(const QSqlQuery &query)
{
    RecordSummary record;
    record.id = query.value(0).toString();
    record.name = query.value(1).toString();
    record.sizeBytes = count(query, 2);
    record.startUs = count(query, 3);
    record.stopUs = count(query, 4);
    record.status = static_cast<RecordStatus>(query.value(5).toInt());
    record.format = static_cast<DataFormat>(query.value(6).toInt());
    record.rate = static_cast<DataRate>(query.value(7).toInt());
    record.deletable = query.value(8).toBool();
    record.loopSizeBytes = count(query, 9);
    record.startPosition = count(query, 10);
    record.stopPosition = count(query, 11);
    return record;
}

} // namespace

Catalogue::Catalogue(const QString &path) : connection(QUuid::createUuid().toString())
{
    if (open(path))
        return;
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 is no catalogue; making a new one").arg(path); });
    discard(path);
    if (open(path))
        return;
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 cannot be written; the catalogue is in memory").arg(path); });
    if (!open(inMemory()))
        throw RecorderError(TQ_KORVE::ekINVALID_CONFIGURATION,
                            QStringLiteral("Qt has no working SQLite driver; Debian: apt-get install libqt5sql5-sqlite"));
}

void Catalogue::discard(const QString &path)
{
    for (const char *ending : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(ending));
}

Catalogue::~Catalogue()
{
    QSqlDatabase::database(connection, false).close();
    QSqlDatabase::removeDatabase(connection);
}

bool Catalogue::open(const QString &path)
{
    if (QSqlDatabase::contains(connection))
        QSqlDatabase::removeDatabase(connection);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    database.setDatabaseName(path);
    if (!database.open())
        return false;
    try {
        return prepareTables();
    } catch (const Error &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromUtf8(error.what()); });
        return false;
    }
}

/// False when the file has tables of another version.
bool Catalogue::prepareTables()
{
    execute(QStringLiteral("PRAGMA encoding='UTF-16'")); // names may hold half a surrogate pair, which UTF-8 cannot
    execute(QStringLiteral("PRAGMA journal_mode=WAL"));
    execute(QStringLiteral("PRAGMA synchronous=NORMAL"));
    QSqlQuery found = execute(QStringLiteral("PRAGMA user_version"));
    const int foundVersion = found.next() ? found.value(0).toInt() : -1;
    if (foundVersion == version)
        return true;
    if (foundVersion != 0)
        return false;
    begin();
    execute(QStringLiteral("CREATE TABLE record(id TEXT PRIMARY KEY, name TEXT, size, start, stop, status, format, rate,"
                           " deletable, loop_size, start_position, stop_position, modified, inode, meta_size, data_size)"
                           " WITHOUT ROWID"));
    execute(QStringLiteral("PRAGMA user_version=%1").arg(version));
    commit();
    return true;
}

QSqlQuery Catalogue::execute(const QString &statement, const QVariantList &values) const
{
    QSqlQuery query(QSqlDatabase::database(connection, false));
    query.setForwardOnly(true);
    bool done = query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        throw Error(QStringLiteral("%1: %2").arg(statement, query.lastError().text()).toStdString());
    return query;
}

void Catalogue::put(const RecordSummary &record, const RecordFolder::Stamp &stamp)
{
    execute(QStringLiteral("INSERT OR REPLACE INTO record VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"),
            {record.id, record.name, bits(record.sizeBytes), bits(record.startUs), bits(record.stopUs),
             int(record.status), int(record.format), int(record.rate), record.deletable, bits(record.loopSizeBytes),
             bits(record.startPosition), bits(record.stopPosition), qlonglong(stamp.modifiedNs), bits(stamp.inode),
             bits(stamp.metaSizeBytes), bits(stamp.dataSizeBytes)});
}

void Catalogue::remove(const QString &id)
{
    execute(QStringLiteral("DELETE FROM record WHERE id=?"), {id});
}

void Catalogue::begin()
{
    execute(QStringLiteral("BEGIN"));
}

void Catalogue::commit()
{
    execute(QStringLiteral("COMMIT"));
}

QHash<QString, RecordFolder::Stamp> Catalogue::stamps() const
{
    QHash<QString, RecordFolder::Stamp> stamps;
    QSqlQuery query = execute(QStringLiteral("SELECT id, modified, inode, meta_size, data_size FROM record"));
    while (next(query))
        stamps.insert(query.value(0).toString(),
                      {query.value(1).toLongLong(), count(query, 2), count(query, 3), count(query, 4)});
    return stamps;
}

QVector<RecordSummary> Catalogue::records() const
{
    QVector<RecordSummary> records;
    QSqlQuery query = execute(QStringLiteral("SELECT * FROM record ORDER BY start, id"));
    while (next(query))
        records.append(summary(query));
    return records;
}

bool Catalogue::contains(const QString &id) const
{
    return execute(QStringLiteral("SELECT 1 FROM record WHERE id=?"), {id}).next();
}

} // namespace installation::recorder
