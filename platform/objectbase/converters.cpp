#include "objectbase/converters.h"

#include <QDateTime>
#include <QString>
#include <QTimeZone>

namespace REPORTGENERATOR
{

QString Converters::ToString(const QDateTime &time)
{
    // A zone has no ISO form of its own; its offset at that moment says the same instant.
    if (time.timeSpec() == Qt::TimeZone)
        return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
    return time.toString(Qt::ISODateWithMs);
}

QDateTime Converters::ToDateTime(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}

} // namespace REPORTGENERATOR
