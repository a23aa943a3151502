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

/// A time since 1970; one before that has seconds below 0.
struct Parts {
    qint64 seconds;
    qint64 us; ///< from 0 to 999999, later than the second
};

Parts partsOf(quint64 us)
{
    constexpr qint64 second = 1'000'000;
    const auto count = static_cast<qint64>(us);
    const qint64 rest = count % second;
    if (rest < 0)
        return {count / second - 1, rest + second};
    return {count / second, rest};
}

/// The number itself for a time whose year has no four digits.
QString dated(quint64 us, const char *form, const QString &fraction)
{
    constexpr qint64 begin = -62'135'596'800; // the year 1
    constexpr qint64 end = 253'402'300'800;   // the year 10000
    const qint64 seconds = partsOf(us).seconds;
    if (seconds < begin || seconds >= end)
        return QString::number(static_cast<qint64>(us));
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(QLatin1String(form)) + fraction;
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
    return dated(us, "yyyy-MM-dd HH:mm:ss", QString());
}

QString exactInstant(quint64 us)
{
    const QString fraction = QStringLiteral(".%1Z").arg(partsOf(us).us, 6, 10, QLatin1Char('0'));
    return dated(us, "yyyy-MM-ddTHH:mm:ss", fraction);
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
