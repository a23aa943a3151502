#include "installation/recorder/notificationqueue.h"

#include "installation/cco/liveness.h"
#include "installation/cco/orbaccess.h"

namespace installation::recorder
{

NotificationQueue::NotificationQueue(TQ_KORVE_IT::IF_Korve_IT_ptr receiver, std::chrono::milliseconds callLimit)
    : receiver(withCallLimit<TQ_KORVE_IT::IF_Korve_IT>(receiver, callLimit))
{
    // A receiver may have the address of a process that was killed; over a connection to that one, what is told is
    // lost.
    queue.add({"a new receiver", [this, callLimit] { askObject(this->receiver, callLimit); }});
}

void NotificationQueue::tell(const std::string &recordId, Notification notification)
{
    queue.add({recordId, [this, notification = std::move(notification)] { notification(receiver); }});
}

} // namespace installation::recorder
