#include "installation/cco/registry.h"

#include "idl/cco.hh"

namespace installation
{

namespace
{

// Far above any installation: keeps a client that registers in a loop from eating the memory.
constexpr std::size_t maximumNames = 10000;

struct SameContent {
    bool operator()(const CORBA::Object_var &one, const CORBA::Object_var &other) const
    {
        return one->_is_equivalent(other);
    }
    bool operator()(const Registry::Values &one, const Registry::Values &other) const { return one == other; }
    template <typename One, typename Other> bool operator()(const One &, const Other &) const { return false; }
};

} // namespace

Registry::Registry(Listener listener) : listener(std::move(listener)) {}

void Registry::put(const std::string &name, Content content)
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    if (known == names.end() && names.size() >= maximumNames)
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    const bool changed = known == names.end() || !std::visit(SameContent{}, known->second.content, content);
    names.insert_or_assign(name, Registered{std::move(content), ++registrations});
    if (changed)
        listener(CCO::eventAvailable, name);
}

CORBA::Object_ptr Registry::takeObject(const std::string &name)
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    if (known == names.end() || !std::holds_alternative<CORBA::Object_var>(known->second.content))
        return CORBA::Object::_nil();
    CORBA::Object_var object = std::get<CORBA::Object_var>(known->second.content);
    erase(known);
    return object._retn();
}

void Registry::takeValues(const std::string &name)
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    if (known != names.end() && std::holds_alternative<Values>(known->second.content))
        erase(known);
}

bool Registry::drop(const Entry &entry)
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(entry.name);
    if (known == names.end() || known->second.registration != entry.registration)
        return false;
    erase(known);
    return true;
}

std::optional<Registry::Content> Registry::find(const std::string &name) const
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    return known == names.end() ? std::nullopt : std::optional(known->second.content);
}

std::vector<std::string> Registry::namesBelow(const std::string &folder) const
{
    const std::scoped_lock lock(mutex);
    std::vector<std::string> below;
    for (auto entry = names.lower_bound(folder); entry != names.end() && entry->first.starts_with(folder); ++entry)
        below.push_back(entry->first.substr(folder.size()));
    return below;
}

std::vector<Registry::Entry> Registry::entries() const
{
    const std::scoped_lock lock(mutex);
    std::vector<Entry> all;
    all.reserve(names.size());
    for (const auto &[name, registered] : names)
        all.push_back({name, registered.content, registered.registration});
    return all;
}

void Registry::erase(Names::iterator position)
{
    const std::string name = position->first;
    names.erase(position);
    listener(CCO::eventGone, name);
}

} // namespace installation
