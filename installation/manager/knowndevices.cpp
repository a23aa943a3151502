#include "installation/manager/knowndevices.h"

#include "installation/manager/database.h"

#include <QDir>
#include <QSqlError>
#include <QVariant>

#include <stdexcept>

namespace installation
{

namespace
{

const Database::Form form{0x4b525644,
                          {QStringLiteral("CREATE TABLE device (id TEXT PRIMARY KEY, address TEXT NOT NULL)")}};

} // namespace

KnownDevices::KnownDevices(const QString &folder)
    : path(QDir(folder).absoluteFilePath(QStringLiteral("devices.sqlite")))
{
    Database::prepare(path, form, [this] { load(); });
}

KnownDevices::AddressById KnownDevices::load() const
{
    const Database database(path);
    QSqlQuery rows = database.run(QStringLiteral("SELECT id, address FROM device"));
    AddressById devices;
    while (rows.next())
        devices.insert(rows.value(0).toString(), rows.value(1).toString());
    if (rows.lastError().isValid()) // it cannot be read any further
        throw std::runtime_error(QStringLiteral("%1: %2").arg(path, rows.lastError().text()).toStdString());
    return devices;
}

void KnownDevices::save(const AddressById &devices) const
{
    const Database database(path);
    database.together([&] {
        database.run(QStringLiteral("DELETE FROM device"));
        for (auto device = devices.cbegin(); device != devices.cend(); ++device)
            database.run(QStringLiteral("INSERT INTO device (id, address) VALUES (?, ?)"),
                         {device.key(), device.value()});
    });
}

} // namespace installation
