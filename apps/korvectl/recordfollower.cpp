#include "apps/korvectl/recordfollower.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/deadline.h"
#include "apps/korvectl/interruption.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "coresupport/trace.h"
#include "orbconnection/vtconnectdata.h"

#include <QCoreApplication>
#include <QDateTime>

using KorveCommon::AbstractServerConnectionData;

namespace korvectl
{

namespace
{

constexpr char sourceName[] = "korvectl/recordfollower";
/// Changes come in groups; a listing is made when a group is over.
constexpr std::chrono::milliseconds quiet{200};
/// A manager's tree is there a little before the manager answers: not worth a word.
constexpr int failuresUntilWord = 10;

/// Nobody is left to tell anything when the reader has gone.
void printOrQuit(const QString &text)
{
    if (!print(text))
        QCoreApplication::quit();
}

} // namespace

RecordFollower::RecordFollower(ManagerSession &session, const CommandLine &line)
    : session(session), line(line), connections(session.holdTreeConnections())
{
    using Connections = AbstractServerConnectionData;
    connect(&connections, &Connections::si_allTicsConnected, this, &RecordFollower::sl_connected);
    connect(&connections, &Connections::si_allTicsDisconnected, this, &RecordFollower::sl_lost);
    connect(&connections, &Connections::si_deviceNodeAdded, this, &RecordFollower::listSoon);
    connect(&changes, &DeviceChanges::si_changed, this, &RecordFollower::listSoon);
    listing.setSingleShot(true);
    listing.setInterval(quiet);
    connect(&listing, &QTimer::timeout, this, &RecordFollower::sl_list);
    QTimer::singleShot(line.timeout, this, &RecordFollower::sl_beginningIsOver);
}

void RecordFollower::sl_connected(const QString &subsystem)
{
    using namespace std::chrono;
    ConnectionEvent event{.subsystem = subsystem};
    if (lostSince)
        event.away = duration_cast<milliseconds>(steady_clock::now() - *lostSince);
    lostSince.reset();
    printed.clear();
    tell(event);
    listSoon();
}

void RecordFollower::sl_lost(const QString &subsystem)
{
    listing.stop();
    lostSince = std::chrono::steady_clock::now();
    tell({.subsystem = subsystem, .isConnected = false});
}

void RecordFollower::sl_beginningIsOver()
{
    if (hasListed || lostSince || connections.IsConnected(session.subsystem()))
        return;
    const VtConnectData where = connections.getConnData(session.subsystem(), KorveCommon::DeviceConnection);
    complain(Failure(ExitCode::NotReachable,
                     QStringLiteral("The value tree of the recorder manager of %1, at %2:%3, did not answer %4.")
                         .arg(session.subsystem(), where.hostName, QString::number(where.port),
                              Deadline(line.timeout).words())));
    QCoreApplication::exit(static_cast<int>(ExitCode::NotReachable));
}

void RecordFollower::listSoon()
{
    listing.start();
}

void RecordFollower::sl_list()
{
    if (!connections.IsConnected(session.subsystem()))
        return; // what comes with its return starts another one
    changes.watch(connections.getClientBasePath(session.subsystem(), KorveCommon::DeviceConnection));
    try {
        print(fetch());
        failures = 0;
        hasListed = true;
    } catch (const Failure &failure) {
        notePostponed(failure);
    }
}

Listing RecordFollower::fetch() const
{
    Listing fetched;
    const QStringList ids = line.device.isEmpty() ? session.deviceIds() : QStringList{line.device};
    for (const QString &id : ids) {
        fetched.devices << session.device(id);
        if (fetched.devices.last().isAvailable) // else it cannot be asked
            addRecords(id, fetched.records);
    }
    return fetched;
}

/// The records of a device that refuses are missing, with a word on it.
void RecordFollower::addRecords(const QString &device, QVector<ListedRecord> &listed) const
{
    try {
        const ManagerSession::Records records = session.records(device);
        for (const KORVE_XML::KORVE_RecordData &record : records)
            listed << ListedRecord{device, record};
    } catch (const Failure &failure) {
        if (failure.exitCode != ExitCode::Refused)
            throw;
        complain(failure);
    }
}

void RecordFollower::notePostponed(const Failure &failure)
{
    traceAt(TraceLevel::Debug, sourceName, [&] { return QString::fromUtf8(failure.what()); });
    const bool isWrongFromTheBeginning = !hasListed && failure.exitCode == ExitCode::Refused; // no such device
    if (isWrongFromTheBeginning || ++failures == failuresUntilWord)
        complain(failure);
    if (isWrongFromTheBeginning)
        QCoreApplication::exit(static_cast<int>(failure.exitCode));
    else
        listSoon();
}

void RecordFollower::tell(ConnectionEvent event)
{
    event.atUs = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()) * 1000;
    printOrQuit(line.json ? eventJson(event) : eventText(event));
}

void RecordFollower::print(const Listing &listing)
{
    const QString text = line.json ? listingJson(listing) : listingText(listing);
    if (text == printed) {
        traceAt(TraceLevel::Debug, sourceName, [] { return QStringLiteral("What has changed is nothing that is shown"); });
        return;
    }
    printed = text;
    printOrQuit(text);
}

ExitCode followRecords(ManagerSession &session, const CommandLine &line)
{
    const Interruption interruption;
    QObject::connect(&interruption, &Interruption::si_interrupted, qApp, &QCoreApplication::quit);
    RecordFollower follower(session, line);
    whenUnread(follower, &QCoreApplication::quit);
    return static_cast<ExitCode>(QCoreApplication::exec());
}

} // namespace korvectl
