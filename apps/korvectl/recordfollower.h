#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/devicechanges.h"
#include "apps/korvectl/failure.h"
#include "apps/korvectl/followreport.h"

#include <QTimer>

namespace korvectl
{

/// Lists devices and records when the connections to the manager's value tree come up, and again when a device or the
/// number of its records changes; tells of each loss of the manager and of its return. Prints to standard output.
///
/// The connections come back by themselves: that is the library's work, of which this hears.
/// Ends the event loop with an exit code when it cannot begin.
/// Thread: main; blocks while it asks the manager.
class RecordFollower : public QObject
{
    Q_OBJECT
public:
    /// Borrows both.
    RecordFollower(ManagerSession &session, const CommandLine &line);

private:
    void sl_connected(const QString &subsystem);
    void sl_lost(const QString &subsystem);
    void sl_beginningIsOver();
    void sl_list();

    void listSoon();
    Listing fetch() const;
    void addRecords(const QString &device, QVector<ListedRecord> &listed) const;
    void tell(ConnectionEvent event);
    void print(const Listing &listing);
    void notePostponed(const Failure &failure);

    ManagerSession &session;
    const CommandLine &line;
    KorveCommon::AbstractServerConnectionData &connections;
    DeviceChanges changes;
    QTimer listing;
    QString printed; ///< the last listing of this connection
    bool hasListed = false;
    int failures = 0; ///< in a row
    std::optional<std::chrono::steady_clock::time_point> lostSince;
};

/// Follows until SIGINT or SIGTERM.
ExitCode followRecords(ManagerSession &session, const CommandLine &line);

} // namespace korvectl
