#include "apps/korvectl/watchcommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/interruption.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/statewatch.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"

#include "korvebase/valuetreepaths.h"

#include <QEventLoop>

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
                  {.title = QStringLiteral("NAME"), .mayBeCut = true}});
}

QString lineFor(const StateChange &change)
{
    const QStringList cells{units::timeOfDay(), change.device, change.record, wordsFor(change.state), change.name};
    return emptyTable().line(cells, resultWidth());
}

QJsonObject objectOf(const StateChange &change)
{
    return {{QStringLiteral("device"), change.device},
            {QStringLiteral("record"), change.record},
            {QStringLiteral("name"), change.name},
            {QStringLiteral("status"), wordsFor(change.state)}};
}

/// The subsystem. The manager looks for watches at the service of its own, and this is registered at the local one.
QString requiredLocal(const CentralService &service, const CommandLine &line)
{
    const QString local = service.localSubsystem(Deadline(line.timeout));
    if (!line.subsystem.isEmpty() && line.subsystem != local)
        throw Failure(ExitCode::Usage,
                      QStringLiteral("Only the local subsystem, %1, can be watched; set KORVE_CCO to that of %2.")
                          .arg(local, line.subsystem));
    return local;
}

/// Says when nothing can be heard of, and when that is over; for programs, to standard output. False when nobody reads it.
bool tellConnection(const CommandLine &line, const QString &subsystem, bool isThere)
{
    if (line.json)
        return print(eventLine(isThere ? "watching" : "lost", {{QStringLiteral("subsystem"), subsystem}}));
    complain((isThere ? QStringLiteral("The recorder manager of %1 is there again.")
                      : QStringLiteral("The recorder manager of %1 is lost; states are told again when it is back."))
                 .arg(subsystem));
    return true;
}

} // namespace

ExitCode watchStates(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const QString subsystem = requiredLocal(service, line);
    const VtConnectData server = treeServerOf(service, subsystem, Deadline(line.timeout));
    // Whose connection tells whether the manager is there.
    const auto tree = requireMirrored(server, korve::path::channel, line.timeout);
    QEventLoop loop;
    int told = 0;
    const StateWatch watch([&](const StateChange &change) {
        const bool isHeard = print(line.json ? eventLine("state", objectOf(change)) : lineFor(change));
        if (!isHeard || ++told == line.changeLimit)
            loop.quit();
    });
    const auto tell = [&](bool isThere) {
        if (!tellConnection(line, subsystem, isThere))
            loop.quit();
    };
    QObject::connect(tree.get(), &VtConnectionObserver::si_connected, &loop, [&tell] { tell(true); });
    QObject::connect(tree.get(), &VtConnectionObserver::si_disconnected, &loop, [&tell] { tell(false); });
    const Interruption interruption; // before anybody is told that this watches
    if (!print(line.json ? eventLine("watching", {{QStringLiteral("subsystem"), subsystem}}) : emptyTable().text()))
        return ExitCode::Success; // nobody reads it
    runUntil(interruption, loop, line.watchTime);
    return ExitCode::Success;
}

} // namespace korvectl
