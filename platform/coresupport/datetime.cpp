#include "coresupport/datetime.h"

#include <QDateTime>

namespace Ulma
{
QString DateTime::toString() const
{
    constexpr quint64 usPerMs = 1000;
    const Qt::TimeSpec spec = zone == Local_TimeZone ? Qt::LocalTime : Qt::UTC;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(timestampUs / usPerMs), spec).toString(format);
}
} // namespace Ulma
