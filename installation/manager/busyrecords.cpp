#include "installation/manager/busyrecords.h"

#include "installation/manager/database.h"

#include <QDir>
#include <QSqlError>

#include <stdexcept>

namespace installation
{

namespace
{

const Database::Form form{0x4b525642,
                          {QStringLiteral("CREATE TABLE record (device TEXT NOT NULL, id TEXT NOT NULL, "
                                          "name TEXT NOT NULL, status INTEGER NOT NULL, PRIMARY KEY (device, id))")}};

RecordState stateIn(const QSqlQuery &row)
{
    const int status = row.value(3).toInt();
    if (status < TQ_KRV::rsREADY_FOR_REPLAY || status > TQ_KRV::rsACTIVE)
        throw std::runtime_error("a status that there is not");
    return {row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
            static_cast<TQ_KRV::eRECORD_STATUS>(status)};
}

} // namespace

BusyRecords::BusyRecords(const QString &folder)
    : path(QDir(folder).absoluteFilePath(QStringLiteral("busyrecords.sqlite")))
{
    Database::prepare(path, form, [this] { load(); });
}

QVector<RecordState> BusyRecords::load() const
{
    const Database database(path);
    QSqlQuery rows = database.run(QStringLiteral("SELECT device, id, name, status FROM record"));
    QVector<RecordState> states;
    while (rows.next())
        states << stateIn(rows);
    if (rows.lastError().isValid()) // it cannot be read any further
        throw std::runtime_error(QStringLiteral("%1: %2").arg(path, rows.lastError().text()).toStdString());
    return states;
}

void BusyRecords::save(const RecordState &state) const
{
    const Database database(path);
    if (state.status == TQ_KRV::rsIDLE)
        database.run(QStringLiteral("DELETE FROM record WHERE device = ? AND id = ?"), {state.device, state.record});
    else
        database.run(QStringLiteral("INSERT OR REPLACE INTO record (device, id, name, status) VALUES (?, ?, ?, ?)"),
                     {state.device, state.record, state.name, static_cast<int>(state.status)});
}

} // namespace installation
