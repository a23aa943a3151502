#include "installation/manager/channelstore.h"

#include "installation/manager/channeltext.h"
#include "installation/manager/database.h"

#include "coresupport/trace.h"

#include <QDir>
#include <QSqlError>

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/channelstore";

const Database::Form form{0x4b525643,
                          {QStringLiteral("CREATE TABLE channel (id INTEGER PRIMARY KEY AUTOINCREMENT, "
                                          "settings TEXT NOT NULL, run TEXT NOT NULL)")}};

void readInto(ChannelList &channels, const QSqlQuery &row)
{
    const QString id = row.value(0).toString();
    try {
        channels.push_back({.id = id,
                            .settings = settingsFrom(row.value(1).toByteArray()),
                            .run = runFrom(row.value(2).toByteArray())});
    } catch (const std::runtime_error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("channel %1 is left out: %2").arg(id, QString::fromUtf8(error.what())); });
    }
}

} // namespace

ChannelStore::ChannelStore(const QString &folder)
    : path(QDir(folder).absoluteFilePath(QStringLiteral("channels.sqlite")))
{
    Database::prepare(path, form, [this] { load(); });
}

ChannelList ChannelStore::load() const
{
    const Database database(path);
    QSqlQuery rows = database.run(QStringLiteral("SELECT id, settings, run FROM channel ORDER BY id"));
    ChannelList channels;
    while (rows.next())
        readInto(channels, rows);
    if (rows.lastError().isValid()) // it cannot be read any further
        throw std::runtime_error(QStringLiteral("%1: %2").arg(path, rows.lastError().text()).toStdString());
    return channels;
}

QString ChannelStore::add(const ChannelSettings &settings) const
{
    const Database database(path);
    const QSqlQuery added = database.run(QStringLiteral("INSERT INTO channel (settings, run) VALUES (?, ?)"),
                                         {toText(settings), toText(ChannelRun())});
    return added.lastInsertId().toString();
}

void ChannelStore::save(const Channel &channel) const
{
    Database(path).run(QStringLiteral("UPDATE channel SET settings = ?, run = ? WHERE id = ?"),
                       {toText(channel.settings), toText(channel.run), channel.id});
}

void ChannelStore::remove(const QString &id) const
{
    Database(path).run(QStringLiteral("DELETE FROM channel WHERE id = ?"), {id});
}

} // namespace installation
