#include "installation/recorder/notificationqueue.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/notificationqueue";

constexpr int failuresUntilGivenUp = 3;

} // namespace

NotificationQueue::NotificationQueue(TQ_KORVE_IT::IF_Korve_IT_ptr receiver, std::chrono::milliseconds callLimit)
    : receiver(TQ_KORVE_IT::IF_Korve_IT::_unchecked_narrow(CORBA::Object_var(withCallLimit(receiver, callLimit))))
{
    thread = std::thread(&NotificationQueue::run, this); // last: everything that it uses is there
}

NotificationQueue::~NotificationQueue()
{
    {
        const std::scoped_lock lock(mutex);
        closed = true;
    }
    changed.notify_all();
    thread.join();
}

void NotificationQueue::tell(Notification notification)
{
    const std::scoped_lock lock(mutex);
    if (waiting.size() >= maximumWaiting)
        waiting.pop_front();
    waiting.push_back(std::move(notification));
    changed.notify_all();
}

void NotificationQueue::finish()
{
    const std::scoped_lock lock(mutex);
    finishing = true;
    changed.notify_all();
}

void NotificationQueue::run()
{
    while (const auto notification = next())
        if (!deliver(*notification))
            break;
    done = true;
}

std::optional<NotificationQueue::Notification> NotificationQueue::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return closed || finishing || !waiting.empty(); });
    if (closed || waiting.empty())
        return std::nullopt;
    Notification notification = std::move(waiting.front());
    waiting.pop_front();
    return notification;
}

bool NotificationQueue::deliver(const Notification &notification)
{
    try {
        notification(receiver);
        failures = 0;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    } catch (const CORBA::SystemException &e) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("A receiver could not be notified: %1").arg(QLatin1String(e._name())); });
        return ++failures < failuresUntilGivenUp;
    }
    return true;
}

} // namespace installation::recorder
