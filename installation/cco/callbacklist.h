#pragma once

#include "installation/calls/activation.h"
#include "installation/cco/callbackqueue.h"
#include "installation/cco/liveness.h"

#include <map>
#include <memory>

namespace installation
{

/// The registered callbacks, by key. Thread: any; no operation but stop() waits for a callback.
class CallbackList
{
public:
    struct Registered {
        std::string key;
        CCO::Callback_var callback;
        std::string owner; ///< the address that has registered it
    };

    explicit CallbackList(std::chrono::milliseconds callLimit);

    /// @p registration is what the client holds of it; it goes when the callback goes. @p owner is the address that has
    /// registered it: one of them has at most a quarter of all.
    /// @throws CORBA::NO_RESOURCES when there are too many callbacks, CORBA::OBJECT_NOT_EXIST after stop().
    void add(const std::string &key, CCO::Callback_ptr callback, CallbackQueue::Interests interests,
             std::shared_ptr<Activation> registration, const std::string &owner);
    void remove(const std::string &key);
    /// Takes note of a look at the callback, and removes it when that was its end.
    void drop(const std::string &key, Answer answer);
    void tell(CORBA::ULong event, const std::string &name);
    /// Frees what belonged to callbacks that have ended.
    void reap();
    /// Ends all, and waits for those that are being told something.
    void stop();

    std::vector<Registered> callbacks() const;

private:
    struct Subscription {
        std::unique_ptr<CallbackQueue> queue;
        std::shared_ptr<Activation> registration;
        std::string owner;
        Silence silence{};
    };
    using Subscriptions = std::map<std::string, Subscription>;

    bool hasRoomFor(const std::string &owner) const;
    void retire(Subscriptions::iterator position, std::vector<std::shared_ptr<Activation>> &registrations);

    const std::chrono::milliseconds callLimit;
    mutable std::mutex mutex; // guards the three members below
    Subscriptions active;
    std::vector<std::unique_ptr<CallbackQueue>> retired; ///< closed; their threads may still be telling something
    bool stopped = false;
};

} // namespace installation
