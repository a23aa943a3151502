#include "installation/cco/registrar.h"

#include "installation/cco/holder.h"
#include "installation/contracts/managernames.h"

#include "coresupport/trace.h"
#include "orbconnection/refusednames.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/registrar";

template <typename... Texts> void traceName(const char *pattern, const Texts &...texts)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QString::fromUtf8(pattern).arg(QString::fromStdString(texts)...); });
}

/// Where it is listed that the one at @p endpoint wants @p name.
std::string refusalOf(const std::string &name, const NetworkAddress &endpoint)
{
    return CorbaCommon::refusedNames + name + '/' + endpoint.host + ':' + std::to_string(endpoint.port);
}

std::string hostOf(const Registry::Content &content)
{
    const auto endpoint = Holder(content).endpoint();
    return endpoint ? endpoint->host : std::string();
}

} // namespace

Registrar::Registrar(Registry &registry, std::chrono::milliseconds answerLimit)
    : registry(registry), answerLimit(answerLimit)
{
}

void Registrar::put(const std::string &name, const Registry::Content &content, const std::string &caller)
{
    for (;;) {
        const Registry::Outcome outcome = registry.offer(name, content, caller);
        if (outcome.isNew)
            traceName("%1 is held by %2", name, Holder(content).description());
        if (!outcome.holder)
            return forgetRefusal(name, content);
        if (!isLeftBehind(*outcome.holder, content) && lives(*outcome.holder))
            refuse(*outcome.holder, content, caller);
        if (registry.replace(*outcome.holder, content, caller)) {
            const Holder holder(outcome.holder->content);
            const Holder next(content);
            if (holder.canBeAsked() || next.canBeAsked()) // mere values may change often
                traceName("%1 goes from %2 to %3", name, holder.description(), next.description());
            return forgetRefusal(name, content);
        }
    }
}

CORBA::Object_ptr Registrar::takeObject(const std::string &name, const std::string &caller)
{
    auto object = take<CORBA::Object_var>(name, caller);
    return object ? object->_retn() : CORBA::Object::_nil();
}

void Registrar::takeValues(const std::string &name, const std::string &caller)
{
    take<Registry::Values>(name, caller);
}

template <typename Kind> std::optional<Kind> Registrar::take(const std::string &name, const std::string &caller)
{
    while (const auto entry = registry.find(name)) { // again, when its holder repeats it meanwhile
        const auto *content = std::get_if<Kind>(&entry->content);
        if (!content)
            return std::nullopt;
        const Holder holder(entry->content);
        const bool isStranger = !caller.empty() && caller != entry->owner;
        if (isStranger && lives(*entry)) {
            traceName("%1 is not taken away for %2: it is held by %3", name, caller, holder.description());
            throw CORBA::NO_PERMISSION(0, CORBA::COMPLETED_NO);
        }
        if (registry.take(*entry)) {
            if (holder.canBeAsked()) // mere values may come and go often
                traceName("%1 is held by nobody: it is taken away from %2", name, holder.description());
            return *content;
        }
    }
    return std::nullopt;
}

bool Registrar::lives(const Registry::Entry &entry) const
{
    const Holder holder(entry.content);
    return holder.canBeAsked() && holder.ask(answerLimit) != Answer::Gone;
}

/// A process that stands still loses the name of its manager and accepts connections all the same, so that the address
/// of its tree seems to live. The tree is that of the next manager.
bool Registrar::isLeftBehind(const Registry::Entry &holder, const Registry::Content &other) const
{
    const auto manager = holder.name == managersTreeName ? registry.find(managerName) : std::nullopt;
    const std::string host = manager ? hostOf(manager->content) : std::string();
    return !host.empty() && hostOf(other) == host && hostOf(holder.content) != host;
}

void Registrar::refuse(const Registry::Entry &holder, const Registry::Content &other, const std::string &caller)
{
    if (noteRefusal(holder.name, other, caller))
        traceName("%1 is refused to %2: it is held by %3", holder.name, Holder(other).description(),
                  Holder(holder.content).description());
    throw CORBA::NO_PERMISSION(0, CORBA::COMPLETED_NO);
}

bool Registrar::noteRefusal(const std::string &name, const Registry::Content &content, const std::string &caller)
{
    const auto endpoint = Holder(content).endpoint();
    if (!endpoint)
        return false;
    try {
        const Registry::Values values{endpoint->host, std::to_string(endpoint->port)};
        return registry.offer(refusalOf(name, *endpoint), values, caller).isNew;
    } catch (const CORBA::NO_RESOURCES &) {
        return false; // so many are refused something that this one is not listed
    }
}

void Registrar::forgetRefusal(const std::string &name, const Registry::Content &content)
{
    const auto endpoint = Holder(content).endpoint();
    const auto listed = endpoint ? registry.find(refusalOf(name, *endpoint)) : std::nullopt;
    if (listed)
        registry.take(*listed);
}

} // namespace installation
