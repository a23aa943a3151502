#include "apps/korvectl/units.h"

#include <QDateTime>

#include <array>
#include <cmath>

namespace korvectl::units
{

namespace
{

constexpr std::array prefixes{"k", "M", "G", "T", "P", "E"};

QString scaled(double value, const char *unit)
{
    constexpr double step = 1000;
    constexpr double roundsUp = 999.95; // would be shown as 1000.0
    if (value < step)
        return QStringLiteral("%1 %2").arg(QString::number(value, 'f', 0), QLatin1String(unit));
    value /= step;
    std::size_t prefix = 0;
    for (; value >= roundsUp && prefix + 1 < prefixes.size(); ++prefix)
        value /= step;
    return QStringLiteral("%1 %2%3").arg(QString::number(value, 'f', 1), QLatin1String(prefixes[prefix]),
                                         QLatin1String(unit));
}

} // namespace

QString bytes(quint64 count)
{
    return scaled(static_cast<double>(count), "B");
}

QString duration(quint64 us)
{
    const quint64 ms = us / 1000;
    const auto twoDigits = [](quint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    return QStringLiteral("%1:%2:%3.%4")
        .arg(QString::number(ms / 3'600'000), twoDigits(ms / 60'000 % 60), twoDigits(ms / 1000 % 60),
             QStringLiteral("%1").arg(ms % 1000, 3, 10, QLatin1Char('0')));
}

QString elapsed(quint64 us)
{
    const double ms = static_cast<double>(us) / 1000;
    if (ms < 10)
        return QStringLiteral("%1 ms").arg(ms, 0, 'f', 1);
    return ms < 1000 ? QStringLiteral("%1 ms").arg(ms, 0, 'f', 0) : QStringLiteral("%1 s").arg(ms / 1000, 0, 'f', 1);
}

QString offset(double seconds)
{
    const double shown = std::round(seconds * 1000) / 1000 + 0.0; // which takes the sign from nothing
    return QStringLiteral("%1 s").arg(shown, 0, 'f', 3);
}

QString instant(quint64 us)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(us / 1000), Qt::UTC);
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString exactInstant(quint64 us)
{
    constexpr quint64 endOfTimes = 253'402'300'800'000'000; // the year 10000
    if (us >= endOfTimes)
        return QString::number(us);
    const QDateTime time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(us / 1'000'000), Qt::UTC);
    return time.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) +
           QStringLiteral(".%1Z").arg(us % 1'000'000, 6, 10, QLatin1Char('0'));
}

QString timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
}

QString rate(quint64 byteCount, quint64 us)
{
    if (us == 0)
        return QStringLiteral("-");
    return scaled(static_cast<double>(byteCount) * 1e6 / static_cast<double>(us), "B/s");
}

} // namespace korvectl::units
