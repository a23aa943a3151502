#include "installation/cco/callbackqueue.h"

#include "installation/cco/orbaccess.h"

#include <algorithm>

namespace installation
{

namespace
{

bool covers(const std::string &wanted, const std::string &name)
{
    return wanted.empty() || wanted == name || (wanted.ends_with('/') && name.starts_with(wanted));
}

} // namespace

CallbackQueue::CallbackQueue(CCO::Callback_ptr callback, Interests interests, std::chrono::milliseconds callLimit)
    : receiver(withCallLimit<CCO::Callback>(callback, callLimit)), interests(std::move(interests))
{
}

void CallbackQueue::tell(CORBA::ULong event, const std::string &name)
{
    if (isWanted(event, name))
        queue.add({name, [this, event, name] { receiver->notify(event, name.c_str()); }});
}

bool CallbackQueue::isWanted(CORBA::ULong event, const std::string &name) const
{
    return interests.empty() || std::ranges::any_of(interests, [&](const Interest &interest) {
               return interest.event == event && covers(interest.name, name);
           });
}

} // namespace installation
