#pragma once

#include "installation/calls/servedobjects.h"
#include "installation/recorder/notifier.h"
#include "installation/recorder/recordingformat.h"
#include "installation/recorder/sessiontable.h"
#include "installation/recorder/storethread.h"

#include <optional>

namespace installation::recorder
{

class RecordingReceiver;

/// Makes the sessions of a recorder, finds them and ends them.
///
/// Thread: any; making one waits for the store.  Errors: throws RecorderError.  Lives in a `shared_ptr`.
class Sessions : public std::enable_shared_from_this<Sessions>
{
public:
    /// What sessions work with.
    struct Surroundings {
        ServedObjects objects;
        std::shared_ptr<StoreThread> store;
        std::shared_ptr<Activities> activities;
        std::shared_ptr<Notifier> notifier;
        std::function<quint64()> clockUs;
        quint32 ownHost = 0;       ///< IPv4, where links listen
        quint32 publishedHost = 0; ///< where others find them
    };
    using Receiver = TQ_KORVE_IT::IF_Korve_IT_ptr;

    explicit Sessions(Surroundings surroundings);
    ~Sessions() { stop(); }
    Sessions(const Sessions &) = delete;

    /// The replay of a record, made when there is none; it counts for @p rate, else for the record's own. The caller
    /// releases it.
    TQ_KORVE::IF_ReplaySession_ptr replay(const QString &recordId, Receiver receiver, std::optional<DataRate> rate);
    /// A new recording, which counts for @p occupied. The caller releases it.
    TQ_KORVE::IF_RecordingSession_ptr record(const RecordingWish &wish, Receiver receiver, DataRate occupied);
    /// Ends the sessions of a record, which may have none.
    /// @throws RecorderError when there is no such record.
    void setIdle(const QString &recordId);
    /// Keeps no file of a record open whose sessions have ended.
    void forgetEnded() { sessions.forgetClosed(); }
    /// Ends all; none is made any more.
    void stop();

    /// @p receiver hears of every record from now on.
    /// @throws CORBA::BAD_PARAM for nil, CORBA::NO_RESOURCES when there are too many: the operation declares no other.
    void announce(Receiver receiver);

    /// Those of @p records that have sessions, with what goes on with them.
    QVector<RecordSummary> active(const QVector<RecordSummary> &records) const;
    Activities &activities() { return *around.activities; }
    Notifier &notifier() { return *around.notifier; }
    const SessionTable &table() const { return sessions; }

private:
    struct Opened;

    TQ_KORVE::IF_ReplaySession_ptr makeReplay(const QString &recordId, std::optional<DataRate> rate);
    void attach(Receiver receiver, const QString &recordId, bool isNew);
    static Opened make(RecordStore &records, Activities &activities, Record record);
    Opened begin(const RecordingWish &wish);
    std::shared_ptr<RecordingReceiver> receiverOf(const Opened &opened, const std::shared_ptr<Activity> &activity);
    void discard(const std::shared_ptr<const QString> &recordId) const;
    void requireRoom(SessionKind kind);
    std::function<void()> endOf(const QString &recordId);
    Opened open(const QString &recordId);

    const Surroundings around;
    SessionTable sessions;
    std::mutex making; // one at a time, so that no record gets two
    bool isStopped = false;
};

} // namespace installation::recorder
