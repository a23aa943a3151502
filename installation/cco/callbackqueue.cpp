#include "installation/cco/callbackqueue.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"

#include <algorithm>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/callbackqueue";

constexpr int failuresUntilGivenUp = 3;

bool covers(const std::string &wanted, const std::string &name)
{
    return wanted.empty() || wanted == name || (wanted.ends_with('/') && name.starts_with(wanted));
}

} // namespace

CallbackQueue::CallbackQueue(CCO::Callback_ptr callback, Interests interests, std::chrono::milliseconds callLimit)
    : receiver(CCO::Callback::_unchecked_narrow(CORBA::Object_var(withCallLimit(callback, callLimit)))),
      interests(std::move(interests))
{
    thread = std::thread(&CallbackQueue::run, this); // last: everything that it uses is there
}

CallbackQueue::~CallbackQueue()
{
    close();
    thread.join();
}

void CallbackQueue::tell(CORBA::ULong event, const std::string &name)
{
    if (!isWanted(event, name))
        return;
    const std::scoped_lock lock(mutex);
    if (events.size() >= maximumEvents)
        events.pop_front();
    events.push_back({event, name});
    changed.notify_all();
}

void CallbackQueue::close()
{
    const std::scoped_lock lock(mutex);
    closed = true;
    changed.notify_all();
}

bool CallbackQueue::isWanted(CORBA::ULong event, const std::string &name) const
{
    return interests.empty() || std::ranges::any_of(interests, [&](const Interest &interest) {
               return interest.event == event && covers(interest.name, name);
           });
}

void CallbackQueue::run()
{
    while (const auto event = next())
        if (!deliver(*event))
            break;
    done = true;
}

std::optional<CallbackQueue::Event> CallbackQueue::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return closed || !events.empty(); });
    if (closed)
        return std::nullopt;
    Event event = std::move(events.front());
    events.pop_front();
    return event;
}

bool CallbackQueue::deliver(const Event &event)
{
    try {
        receiver->notify(event.event, event.name.c_str());
        failures = 0;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    } catch (const CORBA::SystemException &e) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A callback could not be told of %1: %2")
                .arg(QString::fromStdString(event.name), QLatin1String(e._name()));
        });
        return ++failures < failuresUntilGivenUp;
    }
    return true;
}

} // namespace installation
