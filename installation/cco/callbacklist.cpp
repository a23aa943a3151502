#include "installation/cco/callbacklist.h"

#include <algorithm>
#include <system_error>

namespace installation
{

namespace
{
// Each has a thread.
constexpr std::ptrdiff_t maximumCallbacks = 256;
constexpr std::ptrdiff_t maximumCallbacksOfOneAddress = maximumCallbacks / 4;
} // namespace

CallbackList::CallbackList(std::chrono::milliseconds callLimit) : callLimit(callLimit) {}

void CallbackList::add(const std::string &key, CCO::Callback_ptr callback, CallbackQueue::Interests interests,
                       std::shared_ptr<Activation> registration, const std::string &owner)
{
    const std::scoped_lock lock(mutex);
    if (stopped)
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    if (!hasRoomFor(owner))
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    try {
        auto queue = std::make_unique<CallbackQueue>(callback, std::move(interests), callLimit);
        active[key] = {std::move(queue), std::move(registration), owner};
    } catch (const std::system_error &) { // no thread to be had
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    }
}

void CallbackList::remove(const std::string &key)
{
    std::vector<std::shared_ptr<Activation>> registrations; // the POA is called without the lock
    const std::scoped_lock lock(mutex);
    const auto position = active.find(key);
    if (position != active.end())
        retire(position, registrations);
}

void CallbackList::drop(const std::string &key, Answer answer)
{
    std::vector<std::shared_ptr<Activation>> registrations;
    const std::scoped_lock lock(mutex);
    const auto position = active.find(key);
    if (position != active.end() && position->second.silence.endsWith(answer))
        retire(position, registrations);
}

void CallbackList::tell(CORBA::ULong event, const std::string &name)
{
    const std::scoped_lock lock(mutex);
    for (const auto &[key, subscription] : active)
        subscription.queue->tell(event, name);
}

void CallbackList::reap()
{
    std::vector<std::shared_ptr<Activation>> registrations;
    std::vector<std::unique_ptr<CallbackQueue>> ended;
    const std::scoped_lock lock(mutex);
    for (auto position = active.begin(); position != active.end();) {
        const auto current = position++;
        if (current->second.queue->finished())
            retire(current, registrations);
    }
    const auto firstEnded = std::ranges::partition(retired, [](const auto &queue) { return !queue->finished(); });
    std::ranges::move(firstEnded, std::back_inserter(ended));
    retired.erase(firstEnded.begin(), firstEnded.end());
}

void CallbackList::stop()
{
    Subscriptions endedSubscriptions; // threads are joined without the lock
    std::vector<std::unique_ptr<CallbackQueue>> endedQueues;
    const std::scoped_lock lock(mutex);
    stopped = true;
    for (const auto &[key, subscription] : active)
        subscription.queue->close();
    endedSubscriptions.swap(active);
    endedQueues.swap(retired);
}

std::vector<CallbackList::Registered> CallbackList::callbacks() const
{
    const std::scoped_lock lock(mutex);
    std::vector<Registered> all;
    for (const auto &[key, subscription] : active)
        all.push_back({key, subscription.queue->callback(), subscription.owner});
    return all;
}

bool CallbackList::hasRoomFor(const std::string &owner) const
{
    const auto all = std::ssize(active) + std::ssize(retired);
    const auto own = std::ranges::count_if(active, [&](const auto &known) { return known.second.owner == owner; });
    return all < maximumCallbacks && own < maximumCallbacksOfOneAddress;
}

void CallbackList::retire(Subscriptions::iterator position, std::vector<std::shared_ptr<Activation>> &registrations)
{
    position->second.queue->close();
    registrations.push_back(std::move(position->second.registration));
    retired.push_back(std::move(position->second.queue));
    active.erase(position);
}

} // namespace installation
