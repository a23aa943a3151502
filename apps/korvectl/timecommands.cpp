#include "apps/korvectl/timecommands.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"

#include <QDateTime>

namespace korvectl
{

namespace
{

using Handler = AdminSession::Handler;

struct DeviceTime {
    unsigned long long us = 0;
    bool isSynchronized = false;
};

quint64 nowUs()
{
    return static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()) * 1000;
}

DeviceTime timeOf(AdminSession &admin, const QString &device)
{
    DeviceTime time;
    admin.ask(Flow::Admin, QStringLiteral("asking for the clock of %1").arg(device),
              [&](Handler &handler) { return handler.GetDeviceTime(device, time.us, time.isSynchronized); });
    return time;
}

QString tableOf(const QString &device, const DeviceTime &time, double aheadS)
{
    Table table({{QStringLiteral("DEVICE")},
                 {QStringLiteral("TIME (UTC)")},
                 {QStringLiteral("AHEAD OF HERE"), Qt::AlignRight},
                 {QStringLiteral("SYNCHRONIZED")}});
    table.addRow({device, units::exactInstant(time.us), units::offset(aheadS),
                  time.isSynchronized ? QStringLiteral("yes") : QStringLiteral("no")});
    return table.text();
}

void printTime(const CommandLine &line, AdminSession &admin)
{
    const DeviceTime time = timeOf(admin, line.device);
    const double aheadS = (static_cast<double>(time.us) - static_cast<double>(nowUs())) / 1e6;
    print(line.json ? jsonText(QJsonObject{{QStringLiteral("device"), line.device},
                                           {QStringLiteral("time"), units::exactInstant(time.us)},
                                           {QStringLiteral("timeUs"), jsonTime(time.us)},
                                           {QStringLiteral("aheadS"), aheadS},
                                           {QStringLiteral("synchronized"), time.isSynchronized}})
                    : tableOf(line.device, time, aheadS));
}

} // namespace

ExitCode getTime(const CommandLine &line)
{
    AdminSession admin(line);
    printTime(line, admin);
    return ExitCode::Success;
}

ExitCode setTime(const CommandLine &line)
{
    AdminSession admin(line);
    const quint64 us = line.moment.kind == Moment::Kind::Now ? nowUs() : line.moment.us;
    admin.change(Flow::Admin, QStringLiteral("setting the clock of %1").arg(line.device),
                 {QStringLiteral("time"), QStringLiteral("get"), line.device},
                 [&](Handler &handler) { return handler.SetDeviceTime(line.device, us); });
    printTime(line, admin);
    return ExitCode::Success;
}

} // namespace korvectl
