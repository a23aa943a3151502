#pragma once

#include "apps/korvectl/managersession.h"

#include <QJsonObject>

/// Devices and records as text for standard output, with the end of its last line.
namespace korvectl
{

/// A record and where it is.
struct ListedRecord {
    QString device;
    KORVE_XML::KORVE_RecordData record;
};

/// 0 for one whose end is not behind its beginning.
quint64 durationUs(const KORVE_XML::KORVE_RecordData &record);

QJsonObject deviceObject(const DeviceState &device);
QJsonObject recordObject(const ListedRecord &listed);

QString devicesTable(const QVector<DeviceState> &devices);
/// An array of objects with "device", "address", "available" and "firmware".
QString devicesJson(const QVector<DeviceState> &devices);

QString recordsTable(const QVector<ListedRecord> &records);
/// An array of objects. The names of quantities end in their units; "begin" is ISO 8601 in UTC, too.
QString recordsJson(const QVector<ListedRecord> &records);

} // namespace korvectl
