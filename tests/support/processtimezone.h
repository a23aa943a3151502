#pragma once

#include <QByteArray>

#include <ctime>

/// Puts the process into a time zone as POSIX writes it, such as "TST-02:00" for two hours east of Greenwich, for its
/// life.
class ProcessTimeZone
{
public:
    explicit ProcessTimeZone(const QByteArray &zone) { set(zone); }
    ~ProcessTimeZone() { set(before); }
    ProcessTimeZone(const ProcessTimeZone &) = delete;
    ProcessTimeZone &operator=(const ProcessTimeZone &) = delete;

private:
    static void set(const QByteArray &zone)
    {
        if (zone.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", zone);
        tzset();
    }

    const QByteArray before = qgetenv("TZ");
};
