#include "installation/manager/database.h"

#include "coresupport/trace.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QUuid>
#include <QVariant>

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/database";

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw std::runtime_error(QStringLiteral("%1: %2").arg(path, reason).toStdString());
}

void open(const QString &path, const Database::Form &form)
{
    const bool isNew = QFileInfo(path).size() == 0;
    const Database database(path);
    if (!isNew && database.number(QStringLiteral("PRAGMA application_id")) != form.applicationId)
        fail(path, QStringLiteral("not a file of this kind"));
    if (!isNew)
        return;
    database.together([&] {
        for (const QString &statement : form.statements)
            database.run(statement);
        database.run(QStringLiteral("PRAGMA application_id = %1").arg(form.applicationId));
    });
}

void putAside(const QString &path, const QString &reason)
{
    const QString refused = path + QLatin1String(".refused");
    QFile::remove(refused);
    if (!QFile::rename(path, refused))
        fail(path, reason);
    traceAt(TraceLevel::Normal, sourceName, [&] { return QStringLiteral("refused %1").arg(reason); });
}

} // namespace

Database::Database(const QString &path) : path(path), name(QUuid::createUuid().toString())
{
    QString reason;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(path);
        if (database.open())
            return;
        reason = database.lastError().text();
    }
    close();
    fail(path, reason);
}

Database::~Database()
{
    close();
}

void Database::close() const
{
    QSqlDatabase::database(name, false).close();
    QSqlDatabase::removeDatabase(name);
}

QSqlQuery Database::run(const QString &statement, const QVariantList &values) const
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

int Database::number(const QString &statement) const
{
    QSqlQuery query = run(statement);
    return query.next() ? query.value(0).toInt() : 0;
}

void Database::together(const std::function<void()> &work) const
{
    run(QStringLiteral("BEGIN IMMEDIATE"));
    work(); // a failure leaves the transaction open, and closing the file drops it
    run(QStringLiteral("COMMIT"));
}

void Database::prepare(const QString &path, const Form &form, const std::function<void()> &read)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        fail(folder, QStringLiteral("the folder cannot be made"));
    try {
        open(path, form);
        read();
    } catch (const std::runtime_error &error) {
        putAside(path, QString::fromUtf8(error.what()));
        open(path, form);
    }
}

} // namespace installation
