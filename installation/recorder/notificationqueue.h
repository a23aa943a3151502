#pragma once

#include "idl/korve.hh"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace installation::recorder
{

/// The notifications for one receiver, told to it by a thread of its own.
///
/// A receiver that falls far behind loses the oldest, and one that fails three times in a row is given up.
class NotificationQueue
{
public:
    using Notification = std::function<void(TQ_KORVE_IT::IF_Korve_IT_ptr)>;

    static constexpr std::size_t maximumWaiting = 1000;

    NotificationQueue(TQ_KORVE_IT::IF_Korve_IT_ptr receiver, std::chrono::milliseconds callLimit);
    /// Waits for the notification that is being told; those after it are dropped.
    ~NotificationQueue();
    NotificationQueue(const NotificationQueue &) = delete;

    /// Never waits for the receiver.
    void tell(Notification notification);
    /// Ends when everything is told. Does not wait.
    void finish();
    /// The thread is done: all is told, or the receiver was given up.
    bool finished() const { return done; }
    bool isFor(TQ_KORVE_IT::IF_Korve_IT_ptr other) const { return receiver->_is_equivalent(other); }

private:
    void run();
    std::optional<Notification> next();
    bool deliver(const Notification &notification);

    const TQ_KORVE_IT::IF_Korve_IT_var receiver;
    std::mutex mutex; // guards the three members below; not held while the receiver is told
    std::deque<Notification> waiting;
    bool finishing = false;
    bool closed = false;
    std::condition_variable changed;
    int failures = 0; // of the thread alone
    std::atomic<bool> done = false;
    std::thread thread;
};

} // namespace installation::recorder
