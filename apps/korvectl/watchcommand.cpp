#include "apps/korvectl/watchcommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/interruption.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/managersession.h"
#include "apps/korvectl/statewatch.h"
#include "apps/korvectl/table.h"

#include <QDateTime>
#include <QEventLoop>
#include <QTimer>

namespace korvectl
{

namespace
{

using KorveCommon::ChannelState::State;

QString wordsFor(State state)
{
    switch (state) {
    case State::Idle:
        return QStringLiteral("IDLE");
    case State::ReadyForReplay:
        return QStringLiteral("READY_FOR_REPLAY");
    case State::Replaying:
        return QStringLiteral("REPLAYING");
    }
    return QStringLiteral("unknown state %1").arg(int{state}); // of a newer library
}

/// Rows come one by one, so the columns are as wide as the usual contents.
Table emptyTable()
{
    return Table({{QStringLiteral("TIME"), Qt::AlignLeft, 12},
                  {QStringLiteral("DEVICE"), Qt::AlignLeft, 8},
                  {QStringLiteral("RECORD"), Qt::AlignLeft, 25},
                  {QStringLiteral("STATUS"), Qt::AlignLeft, 16},
                  {QStringLiteral("NAME")}});
}

QString lineFor(const StateChange &change)
{
    const QString now = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    return emptyTable().line({now, change.device, change.record, wordsFor(change.state), change.name});
}

QString eventLine(const char *event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), QLatin1String(event));
    object.insert(QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    return jsonLine(object);
}

QJsonObject objectOf(const StateChange &change)
{
    return {{QStringLiteral("device"), change.device},
            {QStringLiteral("record"), change.record},
            {QStringLiteral("name"), change.name},
            {QStringLiteral("status"), wordsFor(change.state)}};
}

/// The manager looks for watches at the service of its own subsystem, and this is registered at the local one.
void requireLocal(const CentralService &service, const CommandLine &line)
{
    const QString local = service.localSubsystem(Deadline(line.timeout));
    if (!line.subsystem.isEmpty() && line.subsystem != local)
        throw Failure(ExitCode::Usage,
                      QStringLiteral("Only the local subsystem, %1, can be watched; set KORVE_CCO to that of %2.")
                          .arg(local, line.subsystem));
}

} // namespace

ExitCode watchStates(const CommandLine &line)
{
    const CentralService service(line.timeout);
    requireLocal(service, line);
    const ManagerSession session(service, line.subsystem, line.timeout);
    QEventLoop loop;
    int told = 0;
    const StateWatch watch([&](const StateChange &change) {
        const bool isHeard = print(line.json ? eventLine("state", objectOf(change)) : lineFor(change));
        if (!isHeard || ++told == line.changeLimit)
            loop.quit();
    });
    Interruption interruption;
    QObject::connect(&interruption, &Interruption::si_interrupted, &loop, &QEventLoop::quit);
    print(line.json ? eventLine("watching", {{QStringLiteral("subsystem"), session.subsystem()}})
                    : emptyTable().text());
    if (line.watchTime.count() > 0)
        QTimer::singleShot(line.watchTime, &loop, &QEventLoop::quit);
    loop.exec();
    return ExitCode::Success;
}

} // namespace korvectl
