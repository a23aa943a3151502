#include "installation/recorder/notifier.h"

#include "installation/recorder/recordererror.h"

#include <algorithm>

namespace installation::recorder
{

void Notifier::announce(Receiver receiver)
{
    const std::scoped_lock lock(mutex);
    listenerFor(receiver).everything = true;
}

void Notifier::remove(Receiver receiver)
{
    const std::scoped_lock lock(mutex);
    for (Listener &listener : listeners)
        if (listener.queue->isFor(receiver))
            listener.everything = false;
    retireUnused();
}

void Notifier::attach(Receiver receiver, const QString &recordId)
{
    if (CORBA::is_nil(receiver))
        return;
    const std::scoped_lock lock(mutex);
    listenerFor(receiver).recordIds.insert(recordId);
}

/// What was told before still arrives.
void Notifier::detach(const QString &recordId)
{
    for (Listener &listener : listeners)
        listener.recordIds.erase(recordId);
    retireUnused();
}

void Notifier::tellStatus(const QString &recordId, const QString &name, RecordStatus status)
{
    const std::scoped_lock lock(mutex);
    TQ_KORVE_IT::struSessionNotification what;
    what.number = ++lastNumber;
    what.timestamp = clock();
    what.sessionId = recordId.toUtf8().constData();
    what.notification = static_cast<CORBA::ULong>(status); // contract: the device numbers them as the object model does
    what.recordId = what.sessionId;
    what.text = name.toUtf8().constData();
    tell(recordId, [what](Receiver receiver) { receiver->processNotificationAboutSession(what); });
    if (status == KORVE_XML::KORVE_RecordData::IDLE) // here, where no new session of the record can come between
        detach(recordId);
}

NotificationQueue::Notification Notifier::notificationOf(Change change, const QString &recordId, const QString &text)
{
    TQ_KORVE_IT::struNotification what;
    what.number = ++lastNumber;
    what.timestamp = clock();
    what.notification = static_cast<CORBA::ULong>(change);
    what.recordId = recordId.toUtf8().constData();
    what.text = text.toUtf8().constData();
    return [what](Receiver receiver) { receiver->processNotification(what); };
}

void Notifier::tellChange(Change change, const QString &recordId, const QString &text)
{
    const std::scoped_lock lock(mutex);
    tell(recordId, notificationOf(change, recordId, text));
}

void Notifier::tellOne(Receiver receiver, Change change, const QString &recordId, const QString &text)
{
    if (CORBA::is_nil(receiver))
        return;
    const std::scoped_lock lock(mutex);
    if (stopped)
        return;
    const Listener *const known = knownFor(receiver);
    const Listener &listener = known ? *known : add(receiver);
    if (!listener.isWanted(recordId))
        listener.queue->tell(recordId.toStdString(), notificationOf(change, recordId, text));
    retireUnused(); // which ends when it has told
}

void Notifier::stop()
{
    std::list<Listener> ending; // their threads are joined without the lock
    const std::scoped_lock lock(mutex);
    stopped = true;
    for (Listener &listener : listeners)
        listener.queue->close();
    ending.swap(listeners);
}

std::size_t Notifier::receiverCount()
{
    const std::scoped_lock lock(mutex);
    forgetFinished();
    return listeners.size();
}

/// Null when it is to hear of nothing so far.
Notifier::Listener *Notifier::knownFor(Receiver receiver)
{
    forgetFinished();
    const auto found = std::ranges::find_if(listeners, [receiver](const Listener &listener) {
        return (listener.everything || !listener.recordIds.empty()) && listener.queue->isFor(receiver);
    });
    return found == listeners.end() ? nullptr : &*found;
}

Notifier::Listener &Notifier::listenerFor(Receiver receiver)
{
    if (Listener *const known = knownFor(receiver))
        return *known;
    if (stopped)
        throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, QStringLiteral("the recorder is ending"));
    if (listeners.size() >= maximumReceivers)
        throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED, QStringLiteral("too many receivers of notifications"));
    return add(receiver);
}

Notifier::Listener &Notifier::add(Receiver receiver)
{
    listeners.push_back({std::make_unique<NotificationQueue>(receiver, callLimit)});
    return listeners.back();
}

void Notifier::tell(const QString &recordId, const NotificationQueue::Notification &notification)
{
    forgetFinished();
    for (Listener &listener : listeners)
        if (listener.isWanted(recordId))
            listener.queue->tell(recordId.toStdString(), notification);
}

void Notifier::retireUnused()
{
    for (Listener &listener : listeners)
        if (!listener.everything && listener.recordIds.empty())
            listener.queue->finish();
}

void Notifier::forgetFinished()
{
    listeners.remove_if([](const Listener &listener) { return listener.queue->finished(); });
}

} // namespace installation::recorder
