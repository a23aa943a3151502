#pragma once

#include "coresupport/coresupport_export.h"

#include <QString>

namespace Ulma
{
/// A time stamp of the installation (microseconds since 1970, UTC) and how to print it.
class CORESUPPORT_EXPORT DateTime
{
public:
    enum TimeZone { UTC_TimeZone, Local_TimeZone };

    DateTime() = default;
    explicit DateTime(quint64 timestampUs) : timestampUs(timestampUs) {}

    void setTimestamp(quint64 newTimestampUs) { timestampUs = newTimestampUs; }
    void setTimeZone(TimeZone newZone) { zone = newZone; }
    /// @p newFormat has the letters of QDateTime::toString().
    void setFormat(const QString &newFormat) { format = newFormat; }

    /// Without further setting, in UTC as "yyyy-MM-dd hh:mm:ss".
    QString toString() const;

private:
    quint64 timestampUs = 0;
    TimeZone zone = UTC_TimeZone;
    QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss");
};
} // namespace Ulma
