#pragma once

#include "installation/recorder/notificationqueue.h"
#include "installation/recorder/record.h"

#include <list>
#include <memory>
#include <set>

namespace installation::recorder
{

/// Tells the receivers of notifications what happens to the records.
///
/// A receiver that is announced hears of every record, one that came with a session of the records of its sessions.
/// Each has a bounded queue; one that does not answer is dropped after three notifications. Notifications are numbered
/// from 1 on, and carry microseconds since 1970.
/// Thread: any; never waits for a receiver.
class Notifier
{
public:
    /// contract: numbers of `processNotification`
    enum class Change : CORBA::ULong { Added = 0, Removed = 1, Changed = 2, TransferFinished = 3, TransferFailed = 4 };
    using Receiver = TQ_KORVE_IT::IF_Korve_IT_ptr;
    /// Tells the time in microseconds.
    using Clock = std::function<quint64()>;

    static constexpr std::size_t maximumReceivers = 100;
    static constexpr std::chrono::milliseconds callLimit{2000};

    explicit Notifier(Clock clock) : clock(std::move(clock)) {}

    /// @throws RecorderError with `ekRESSOURCES_EXHAUSTED` when there are too many.
    void announce(Receiver receiver);
    /// Nothing happens when it is not announced.
    void remove(Receiver receiver);
    /// @p receiver, which may be nil, hears of the record @p recordId until that is idle, and of this at last.
    /// @throws RecorderError as announce() does.
    void attach(Receiver receiver, const QString &recordId);

    void tellStatus(const QString &recordId, const QString &name, RecordStatus status);
    void tellChange(Change change, const QString &recordId, const QString &text);
    /// Tells @p receiver alone, which may be nil, unless it hears of that record anyhow. It is the end of some work, so
    /// that there are never many of them, and nobody is refused.
    void tellOne(Receiver receiver, Change change, const QString &recordId, const QString &text);
    std::size_t receiverCount();
    /// Tells nobody anything any more, and waits for the calls that are being made.
    void stop();

private:
    struct Listener {
        std::unique_ptr<NotificationQueue> queue;
        bool everything = false;
        std::set<QString> recordIds = {};

        bool isWanted(const QString &recordId) const { return everything || recordIds.contains(recordId); }
    };

    Listener *knownFor(Receiver receiver);
    Listener &add(Receiver receiver);
    Listener &listenerFor(Receiver receiver);
    NotificationQueue::Notification notificationOf(Change change, const QString &recordId, const QString &text);
    void tell(const QString &recordId, const NotificationQueue::Notification &notification);
    void detach(const QString &recordId);
    void retireUnused();
    void forgetFinished();

    const Clock clock;
    std::mutex mutex; // guards the rest
    std::list<Listener> listeners;
    bool stopped = false;
    CORBA::ULongLong lastNumber = 0;
};

} // namespace installation::recorder
