#include "apps/korvectl/listing.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"

#include <QDateTime>

namespace korvectl
{

namespace
{

using KORVE_XML::KORVE_RecordData;

/// As people say it.
QString dataRateOf(const KORVE_RecordData &record)
{
    return KORVE_RecordData::GetGUIDataRates().value(record.GetDataRate());
}

template <typename Item> QString jsonArray(const QVector<Item> &items, QJsonObject (*object)(const Item &))
{
    QJsonArray array;
    for (const Item &item : items)
        array.append(object(item));
    return jsonText(array);
}

} // namespace

quint64 durationUs(const KORVE_RecordData &record)
{
    const quint64 duration = record.GetStopTime() - record.GetStartTime(); // either may lie before 1970
    return static_cast<qint64>(duration) > 0 ? duration : 0;
}

QJsonObject deviceObject(const DeviceState &device)
{
    return {{QStringLiteral("device"), device.id},
            {QStringLiteral("address"), device.address},
            {QStringLiteral("available"), device.isAvailable},
            {QStringLiteral("firmware"), device.firmware}};
}

QJsonObject recordObject(const ListedRecord &listed)
{
    const KORVE_RecordData &record = listed.record;
    const auto begin = static_cast<qint64>(record.GetStartTime());
    return {
        {QStringLiteral("device"), listed.device},
        {QStringLiteral("record"), record.GetRecordID()},
        {QStringLiteral("name"), record.GetRecordName()},
        {QStringLiteral("status"), record.GetRecordStatusAsString()},
        {QStringLiteral("begin"), QDateTime::fromMSecsSinceEpoch(begin / 1000, Qt::UTC).toString(Qt::ISODateWithMs)},
        {QStringLiteral("beginUs"), begin},
        {QStringLiteral("durationUs"), static_cast<qint64>(durationUs(record))},
        {QStringLiteral("sizeBytes"), static_cast<qint64>(record.GetSize())},
        {QStringLiteral("dataRate"), record.GetDataRateAsString()},
        {QStringLiteral("dataFormat"), record.GetDataFormatAsString()},
        {QStringLiteral("deletable"), record.GetDeletable()}};
}

QString devicesTable(const QVector<DeviceState> &devices)
{
    Table table({{QStringLiteral("DEVICE")},
                 {QStringLiteral("ADDRESS")},
                 {QStringLiteral("STATE")},
                 {QStringLiteral("FIRMWARE")}});
    for (const DeviceState &device : devices)
        table.addRow({device.id, device.address,
                      device.isAvailable ? QStringLiteral("available") : QStringLiteral("not available"),
                      device.firmware});
    return table.text();
}

QString devicesJson(const QVector<DeviceState> &devices)
{
    return jsonArray(devices, deviceObject);
}

QString recordsTable(const QVector<ListedRecord> &records)
{
    Table table({{QStringLiteral("DEVICE")},
                 {QStringLiteral("RECORD")},
                 {.title = QStringLiteral("NAME"), .mayBeCut = true},
                 {QStringLiteral("STATUS")},
                 {QStringLiteral("BEGIN (UTC)")},
                 {QStringLiteral("DURATION"), Qt::AlignRight},
                 {QStringLiteral("SIZE"), Qt::AlignRight},
                 {QStringLiteral("THROUGHPUT"), Qt::AlignRight},
                 {QStringLiteral("DATA RATE")}});
    for (const ListedRecord &listed : records) {
        const KORVE_RecordData &record = listed.record;
        table.addRow({listed.device, record.GetRecordID(), record.GetRecordName(), record.GetRecordStatusAsString(),
                      units::instant(record.GetStartTime()), units::duration(durationUs(record)),
                      units::bytes(record.GetSize()), units::rate(record.GetSize(), durationUs(record)),
                      dataRateOf(record)});
    }
    return table.text(resultWidth());
}

QString recordsJson(const QVector<ListedRecord> &records)
{
    return jsonArray(records, recordObject);
}

} // namespace korvectl
