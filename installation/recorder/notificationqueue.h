#pragma once

#include "idl/korve.hh"
#include "installation/calls/callqueue.h"

#include <chrono>
#include <functional>

namespace installation::recorder
{

/// The notifications for one receiver, told to it as CallQueue does.
class NotificationQueue
{
public:
    using Notification = std::function<void(TQ_KORVE_IT::IF_Korve_IT_ptr)>;

    NotificationQueue(TQ_KORVE_IT::IF_Korve_IT_ptr receiver, std::chrono::milliseconds callLimit);

    /// Never waits for the receiver. @p recordId is what it is about.
    void tell(const std::string &recordId, Notification notification);
    /// Nothing more is told. Does not wait.
    void close() { queue.close(); }
    /// Ends when everything is told. Does not wait.
    void finish() { queue.finish(); }
    /// The thread is done: all is told, or the receiver was given up.
    bool finished() const { return queue.finished(); }
    bool isFor(TQ_KORVE_IT::IF_Korve_IT_ptr other) const { return receiver->_is_equivalent(other); }

private:
    const TQ_KORVE_IT::IF_Korve_IT_var receiver;
    CallQueue queue; // last: its thread uses the receiver
};

} // namespace installation::recorder
