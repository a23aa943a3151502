#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace korvectl
{

/// For standard output, with the end of its last line.
QString jsonText(const QJsonObject &object);
QString jsonText(const QJsonArray &array);
/// As one line.
QString jsonLine(const QJsonObject &object);
/// As one line: what has happened, and when.
QString eventLine(const char *event, QJsonObject object);
/// A time in microseconds since 1970, always as a number. One before 1970, which wraps around in @p us, is below 0.
QJsonValue jsonTime(quint64 us);
/// A number; as text where programs would round it.
QJsonValue jsonNumber(quint64 number);

} // namespace korvectl
