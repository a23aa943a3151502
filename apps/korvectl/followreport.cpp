#include "apps/korvectl/followreport.h"

#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/units.h"

#include <QDateTime>

namespace korvectl
{

namespace
{

QString sentence(const ConnectionEvent &event)
{
    if (!event.isConnected)
        return QStringLiteral("the recorder manager of %1 is lost; waiting for it").arg(event.subsystem);
    if (!event.away)
        return QStringLiteral("connected to the recorder manager of %1").arg(event.subsystem);
    const QString seconds = QString::number(static_cast<double>(event.away->count()) / 1000, 'f', 1);
    return QStringLiteral("the recorder manager of %1 is back after %2 s").arg(event.subsystem, seconds);
}

QString line(const char *event, QJsonObject object)
{
    object[QStringLiteral("event")] = QLatin1String(event);
    return jsonLine(object);
}

QString counted(int number, const char *thing)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(number), QLatin1String(thing),
                                         QLatin1String(number == 1 ? "" : "s"));
}

} // namespace

QString eventText(const ConnectionEvent &event)
{
    return QStringLiteral("%1 UTC: %2\n").arg(units::instant(event.atUs), sentence(event));
}

QString eventJson(const ConnectionEvent &event)
{
    const auto atMs = static_cast<qint64>(event.atUs / 1000);
    QJsonObject object{
        {QStringLiteral("subsystem"), event.subsystem},
        {QStringLiteral("at"), QDateTime::fromMSecsSinceEpoch(atMs, Qt::UTC).toString(Qt::ISODateWithMs)}};
    if (event.away)
        object[QStringLiteral("awayMs")] = static_cast<qint64>(event.away->count());
    return line(event.isConnected ? "connected" : "lost", object);
}

QString listingText(const Listing &listing)
{
    const QString blank(u'\n');
    return blank + devicesTable(listing.devices) + blank + recordsTable(listing.records) + blank +
           counted(listing.devices.size(), "device") + QLatin1String(", ") +
           counted(listing.records.size(), "record") + blank;
}

QString listingJson(const Listing &listing)
{
    QString lines;
    for (const DeviceState &device : listing.devices)
        lines += line("device", deviceObject(device));
    for (const ListedRecord &record : listing.records)
        lines += line("record", recordObject(record));
    return lines + line("listed", {{QStringLiteral("devices"), listing.devices.size()},
                                   {QStringLiteral("records"), listing.records.size()}});
}

} // namespace korvectl
