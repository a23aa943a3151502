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
/// Microseconds since 1970, of which a time before that is the number that wraps around: always a number, never text.
QJsonValue jsonTime(quint64 us);
/// A number; as text where programs would round it.
QJsonValue jsonNumber(quint64 number);

} // namespace korvectl
