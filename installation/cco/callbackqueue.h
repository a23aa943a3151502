#pragma once

#include "idl/cco.hh"
#include "installation/calls/callqueue.h"

#include <chrono>
#include <string>
#include <vector>

namespace installation
{

/// The events for one callback that it is interested in, told to it as CallQueue does.
class CallbackQueue
{
public:
    struct Interest {
        CORBA::ULong event;
        std::string name; ///< a name, a folder that ends in "/", or "" for every name
    };
    /// None at all is an interest in everything.
    using Interests = std::vector<Interest>;

    CallbackQueue(CCO::Callback_ptr callback, Interests interests, std::chrono::milliseconds callLimit);

    /// Never waits for the callback.
    void tell(CORBA::ULong event, const std::string &name);
    /// Nothing more is told. Does not wait, so that a callback may end its own registration.
    void close() { queue.close(); }

    /// The thread is done: closed or given up.
    bool finished() const { return queue.finished(); }
    /// The caller releases it.
    CCO::Callback_ptr callback() const { return CCO::Callback::_duplicate(receiver); }

private:
    bool isWanted(CORBA::ULong event, const std::string &name) const;

    const CCO::Callback_var receiver;
    const Interests interests;
    CallQueue queue;
};

} // namespace installation
