#pragma once

#include "installation/calls/callqueue.h"
#include "installation/manager/registeredobjects.h"

#include <memory>
#include <vector>

namespace installation
{

/// The clients that are registered below one folder of the central object service, each called from a queue of its own.
///
/// A client that is given up loses its name at the central object service; where that is refused, it counts as new with
/// the same look. One whose name is gone is still told until
/// the third look without it, so that a restart of that service costs nobody anything.
/// Thread: any, look() one at a time; only look() makes calls, and not to clients.
class CallbackClients
{
public:
    /// A call to a client, through a reference that already is of the interface in question.
    using Call = std::function<void(CORBA::Object_ptr client)>;
    struct Message {
        std::string subject; ///< for traces
        Call call;
    };
    /// A new reference to the object, of the interface in question and with that limit; the receiver owns it.
    using Narrow = std::function<CORBA::Object_ptr(CORBA::Object_ptr object)>;
    /// What a new client is told first.
    using Welcome = std::function<std::vector<Message>()>;

    /// More would be too many threads; they are not told anything until others go.
    static constexpr std::size_t maximumClients = 256;

    CallbackClients(RegisteredObjects registered, Narrow narrow, Welcome welcome = {});
    /// As stop().
    ~CallbackClients();

    /// Finds out who is there now.
    void look();
    void tell(const Message &message);
    /// Forgets all clients, and waits for the calls that are being made. Not during look().
    void stop();

private:
    struct Client {
        CORBA::Object_var registered; ///< as it was found
        CORBA::Object_var narrowed;
        std::unique_ptr<CallQueue> queue;
        int looksWithout = 0;
    };
    using Clients = std::map<std::string, Client>;

    void dropGivenUp();
    void takeNew(const RegisteredObjects::Objects &found);
    void countMissing(const RegisteredObjects::Objects &found);
    void begin(const std::string &name, CORBA::Object_ptr object);
    void retire(Clients::iterator position);
    void reap();

    RegisteredObjects registered;
    const Narrow narrow;
    const Welcome welcome;
    std::mutex mutex; // guards `clients`; held neither for calls nor while threads are joined
    Clients clients;
    std::vector<std::unique_ptr<CallQueue>> retired; // of look(): closed, perhaps still in a call
};

} // namespace installation
