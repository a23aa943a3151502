#pragma once

#include "idl/cco.hh"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace installation
{

/// The events for one callback, told to it by a thread of its own.
///
/// A callback that falls far behind loses the oldest events, and one that fails three times in a row is given up.
class CallbackQueue
{
public:
    struct Interest {
        CORBA::ULong event;
        std::string name; ///< a name, a folder that ends in "/", or "" for every name
    };
    /// None at all is an interest in everything.
    using Interests = std::vector<Interest>;

    static constexpr std::size_t maximumEvents = 1000;

    CallbackQueue(CCO::Callback_ptr callback, Interests interests, std::chrono::milliseconds callLimit);
    /// Waits for the event that is being told.
    ~CallbackQueue();
    CallbackQueue(const CallbackQueue &) = delete;
    CallbackQueue &operator=(const CallbackQueue &) = delete;

    /// Never waits for the callback.
    void tell(CORBA::ULong event, const std::string &name);
    /// Nothing more is told. Does not wait, so that a callback may end its own registration.
    void close();

    /// The thread is done: closed or given up.
    bool finished() const { return done; }
    /// The caller releases it.
    CCO::Callback_ptr callback() const { return CCO::Callback::_duplicate(receiver); }

private:
    struct Event {
        CORBA::ULong event;
        std::string name;
    };

    bool isWanted(CORBA::ULong event, const std::string &name) const;
    void run();
    std::optional<Event> next();
    bool deliver(const Event &event);

    const CCO::Callback_var receiver;
    const Interests interests;
    std::mutex mutex; // guards the two members below; not held while the callback is told
    std::deque<Event> events;
    bool closed = false;
    std::condition_variable changed;
    int failures = 0; // of the thread alone
    std::atomic<bool> done = false;
    std::thread thread;
};

} // namespace installation
