#include "installation/manager/callbackclients.h"

#include "coresupport/trace.h"

#include <algorithm>
#include <system_error>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/callbackclients";
constexpr int looksUntilForgotten = 3;

CallQueue::Call callTo(CORBA::Object_ptr client, const CallbackClients::Message &message)
{
    return {message.subject,
            [own = CORBA::Object_var(CORBA::Object::_duplicate(client)), call = message.call] { call(own.in()); }};
}

} // namespace

CallbackClients::CallbackClients(RegisteredObjects registered, Narrow narrow, Welcome welcome)
    : registered(std::move(registered)), narrow(std::move(narrow)), welcome(std::move(welcome))
{
}

CallbackClients::~CallbackClients()
{
    stop();
}

void CallbackClients::stop()
{
    Clients ending;
    {
        const std::scoped_lock lock(mutex);
        ending.swap(clients);
    }
    for (const auto &[name, client] : ending) // all at once, then they are waited for
        client.queue->close();
    retired.clear();
}

void CallbackClients::look()
{
    reap();
    dropGivenUp();
    const auto found = registered.find([](const std::string &) { return true; });
    if (!found)
        return;
    takeNew(*found);
    countMissing(*found);
}

void CallbackClients::tell(const Message &message)
{
    const std::scoped_lock lock(mutex);
    for (const auto &[name, client] : clients)
        client.queue->add(callTo(client.narrowed, message));
}

void CallbackClients::dropGivenUp()
{
    for (auto position = clients.begin(); position != clients.end();) {
        const auto current = position++;
        if (!current->second.queue->givenUp())
            continue;
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("client %1 is given up").arg(QString::fromStdString(current->first)); });
        registered.unregister(current->first, current->second.registered);
        retire(current);
    }
}

void CallbackClients::takeNew(const RegisteredObjects::Objects &found)
{
    for (const auto &[name, object] : found) {
        const auto known = clients.find(name);
        if (known != clients.end() && known->second.registered->_is_equivalent(object))
            continue;
        if (known != clients.end()) // another object has taken the name over
            retire(known);
        if (clients.size() < maximumClients)
            begin(name, object);
    }
}

void CallbackClients::countMissing(const RegisteredObjects::Objects &found)
{
    for (auto position = clients.begin(); position != clients.end();) {
        const auto current = position++;
        int &looksWithout = current->second.looksWithout;
        looksWithout = found.contains(current->first) ? 0 : looksWithout + 1;
        if (looksWithout >= looksUntilForgotten)
            retire(current);
    }
}

void CallbackClients::begin(const std::string &name, CORBA::Object_ptr object)
{
    try {
        Client client;
        client.registered = CORBA::Object::_duplicate(object);
        client.narrowed = narrow(object);
        client.queue = std::make_unique<CallQueue>();
        const std::scoped_lock lock(mutex); // nothing is told between the welcome and what comes after it
        if (welcome)
            for (const Message &message : welcome())
                client.queue->add(callTo(client.narrowed, message));
        clients.insert_or_assign(name, std::move(client));
    } catch (const std::system_error &error) { // no thread to be had; the next look tries again
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("client %1 cannot be told anything: %2")
                .arg(QString::fromStdString(name), QString::fromUtf8(error.what()));
        });
    }
}

void CallbackClients::retire(Clients::iterator position)
{
    const std::scoped_lock lock(mutex);
    position->second.queue->close();
    retired.push_back(std::move(position->second.queue));
    clients.erase(position);
}

void CallbackClients::reap()
{
    std::erase_if(retired, [](const auto &queue) { return queue->finished(); });
}

} // namespace installation
