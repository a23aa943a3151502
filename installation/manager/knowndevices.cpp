#include "installation/manager/knowndevices.h"

#include "coresupport/trace.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/knowndevices";
constexpr int applicationId = 0x4b525644; // marks the file as ours

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw std::runtime_error(QStringLiteral("%1: %2").arg(path, reason).toStdString());
}

/// An open data base; of the thread that makes it.
class Connection
{
public:
    explicit Connection(const QString &path) : path(path), name(QUuid::createUuid().toString())
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(path);
        if (database.open())
            return;
        const QString reason = database.lastError().text();
        close(database);
        fail(path, reason);
    }
    ~Connection() { close(QSqlDatabase::database(name, false)); }
    Connection(const Connection &) = delete;

    QSqlQuery run(const QString &statement, const QVariantList &values = {}) const
    {
        QSqlQuery query(QSqlDatabase::database(name, false));
        query.setForwardOnly(true);
        const bool prepared = query.prepare(statement);
        for (const QVariant &value : values)
            query.addBindValue(value);
        if (!prepared || !query.exec())
            fail(path, query.lastError().text());
        return query;
    }
    int number(const QString &statement) const
    {
        QSqlQuery query = run(statement);
        return query.next() ? query.value(0).toInt() : 0;
    }

private:
    void close(QSqlDatabase database) const
    {
        database.close();
        database = QSqlDatabase(); // or it counts as in use
        QSqlDatabase::removeDatabase(name);
    }

    const QString path;
    const QString name;
};

} // namespace

KnownDevices::KnownDevices(const QString &folder)
    : path(QDir(folder).absoluteFilePath(QStringLiteral("devices.sqlite")))
{
    if (!QDir().mkpath(folder))
        fail(folder, QStringLiteral("the folder cannot be made"));
    try {
        prepare();
        load();
    } catch (const std::runtime_error &error) {
        putAside(QString::fromUtf8(error.what()));
        prepare();
    }
}

KnownDevices::AddressById KnownDevices::load() const
{
    const Connection connection(path);
    QSqlQuery rows = connection.run(QStringLiteral("SELECT id, address FROM device"));
    AddressById devices;
    while (rows.next())
        devices.insert(rows.value(0).toString(), rows.value(1).toString());
    if (rows.lastError().isValid()) // it cannot be read any further
        fail(path, rows.lastError().text());
    return devices;
}

void KnownDevices::save(const AddressById &devices) const
{
    const Connection connection(path);
    connection.run(QStringLiteral("BEGIN IMMEDIATE"));
    connection.run(QStringLiteral("DELETE FROM device"));
    for (auto device = devices.cbegin(); device != devices.cend(); ++device)
        connection.run(QStringLiteral("INSERT INTO device (id, address) VALUES (?, ?)"),
                       {device.key(), device.value()});
    connection.run(QStringLiteral("COMMIT"));
}

void KnownDevices::prepare() const
{
    const bool isNew = QFileInfo(path).size() == 0;
    const Connection connection(path);
    if (!isNew && connection.number(QStringLiteral("PRAGMA application_id")) != applicationId)
        fail(path, QStringLiteral("not a list of devices"));
    if (!isNew)
        return;
    connection.run(QStringLiteral("BEGIN IMMEDIATE"));
    connection.run(QStringLiteral("CREATE TABLE device (id TEXT PRIMARY KEY, address TEXT NOT NULL)"));
    connection.run(QStringLiteral("PRAGMA application_id = %1").arg(applicationId));
    connection.run(QStringLiteral("COMMIT"));
}

void KnownDevices::putAside(const QString &reason) const
{
    const QString refused = path + QLatin1String(".refused");
    QFile::remove(refused);
    if (!QFile::rename(path, refused))
        fail(path, reason);
    traceAt(TraceLevel::Normal, sourceName, [&] { return QStringLiteral("refused %1").arg(reason); });
}

} // namespace installation
