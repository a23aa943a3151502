#pragma once

#include "installation/calls/activation.h"
#include "installation/recorder/activities.h"
#include "installation/recorder/sessionthread.h"

#include <QHash>

#include <memory>
#include <mutex>
#include <vector>

namespace installation::recorder
{

enum class SessionKind { Replay, Recording };

/// The sessions that there are at present, each with its thread, its remote object and its record's activity.
///
/// A session that ends takes its remote object with it: calls to that raise `CORBA::OBJECT_NOT_EXIST`.
/// Thread: any.
class SessionTable
{
public:
    static constexpr std::size_t maximumOfAKind = 16;

    struct Session {
        SessionKind kind = SessionKind::Replay;
        QString recordId;
        DataRate rate = KORVE_XML::KORVE_RecordData::HF_20k; ///< the class that it occupies
        std::shared_ptr<SessionThread> work;
        std::shared_ptr<Activation> activation;
        std::shared_ptr<Activity> activity;
    };

    /// @throws RecorderError with `ekRESSOURCES_EXHAUSTED` when there are too many of @p kind.
    void requireRoom(SessionKind kind);
    void add(Session session);
    /// The remote object of such a session, nil when there is none; the caller releases it.
    CORBA::Object_ptr find(SessionKind kind, const QString &recordId) const;
    /// Ends the sessions of a record and waits for their ends; false when it has none.
    bool end(const QString &recordId);
    /// Says that a session has come to its end by itself; on its own thread.
    void ended(SessionKind kind, const QString &recordId);
    /// Ends all.
    void endAll();
    /// Lets go of what sessions that have ended still hold, such as open files. Waits for nothing but their threads' last
    /// steps.
    void forgetClosed();

    QStringList recordIds() const;
    std::size_t count(SessionKind kind) const;
    /// How many sessions occupy each class.
    QHash<DataRate, int> occupation() const;

private:
    struct Entry : Session {
        bool leaving = false;   ///< somebody ends it
        bool isClosed = false; ///< only its thread is left, if that
    };

    std::vector<std::shared_ptr<Entry>> takeLeave(const std::function<bool(const Entry &)> &isMeant);
    void close(Entry &entry);

    mutable std::mutex mutex; // guards the entries and their flags; not held while one is closed or stopped
    std::vector<std::shared_ptr<Entry>> entries;
};

} // namespace installation::recorder
