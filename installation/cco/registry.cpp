#include "installation/cco/registry.h"

#include "installation/cco/orbaccess.h"

#include "idl/cco.hh"

#include <numeric>

namespace installation
{

namespace
{

// What the maps take for one name beside its texts.
constexpr std::size_t bytesOfAName = 300;

struct SameContent {
    bool operator()(const CORBA::Object_var &one, const CORBA::Object_var &other) const
    {
        return one->_is_equivalent(other);
    }
    bool operator()(const Registry::Values &one, const Registry::Values &other) const { return one == other; }
    template <typename One, typename Other> bool operator()(const One &, const Other &) const { return false; }
};

struct ContentBytes {
    std::size_t operator()(const CORBA::Object_var &object) const { return bytesOf(object); }
    std::size_t operator()(const Registry::Values &values) const
    {
        return std::accumulate(values.begin(), values.end(), std::size_t(0),
                               [](std::size_t sum, const auto &value) { return sum + sizeof value + value.size(); });
    }
};

NameRooms::Cost costOf(const std::string &name, const Registry::Content &content, const std::string &owner)
{
    return {bytesOfAName + name.size() + std::visit(ContentBytes(), content), owner};
}

} // namespace

Registry::Registry(Listener listener) : listener(std::move(listener)) {}

Registry::Outcome Registry::offer(const std::string &name, const Content &content, const std::string &owner)
{
    const NameRooms::Cost cost = costOf(name, content, owner);
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    if (known == names.end()) {
        add(name, content, cost);
        return {.isNew = true};
    }
    Registered &registered = known->second;
    if (!std::visit(SameContent{}, registered.content, content))
        return {.holder = entryOf(*known)};
    registered.registration = ++registrations;
    return {};
}

bool Registry::replace(const Entry &holder, const Content &content, const std::string &owner)
{
    const NameRooms::Cost cost = costOf(holder.name, content, owner);
    const std::scoped_lock lock(mutex);
    const auto known = positionOf(holder);
    if (known == names.end())
        return false;
    remove(known);
    try {
        add(holder.name, content, cost);
    } catch (const CORBA::NO_RESOURCES &) {
        listener(CCO::eventGone, holder.name); // the holder is none any more, and the other has no room
        throw;
    }
    return true;
}

bool Registry::take(const Entry &holder)
{
    const std::scoped_lock lock(mutex);
    const auto known = positionOf(holder);
    if (known == names.end())
        return false;
    erase(known);
    return true;
}

bool Registry::drop(const Entry &entry, Answer answer)
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(entry.name);
    if (known == names.end() || known->second.holding != entry.holding)
        return false;
    // A holder that repeats its registration is not heard by that: only an answer ends its silence.
    const bool isItsEnd = known->second.silence.endsWith(answer);
    if (!isItsEnd || known->second.registration != entry.registration)
        return false;
    erase(known);
    return true;
}

std::optional<Registry::Entry> Registry::find(const std::string &name) const
{
    const std::scoped_lock lock(mutex);
    const auto known = names.find(name);
    return known == names.end() ? std::nullopt : std::optional(entryOf(*known));
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
    for (const auto &name : names)
        all.push_back(entryOf(name));
    return all;
}

Registry::Entry Registry::entryOf(const Names::value_type &name)
{
    const Registered &registered = name.second;
    return {name.first, registered.content, registered.holding, registered.registration,
            registered.cost.owner};
}

/// The end, if the holder has registered again or is gone since it was read.
Registry::Names::iterator Registry::positionOf(const Entry &holder)
{
    const auto known = names.find(holder.name);
    return known != names.end() && known->second.registration == holder.registration ? known : names.end();
}

void Registry::add(const std::string &name, const Content &content, const NameRooms::Cost &cost)
{
    if (!rooms.hasRoom(name, cost))
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    names.emplace(name, Registered{content, cost, ++registrations});
    rooms.take(name, cost);
    listener(CCO::eventAvailable, name);
}

void Registry::remove(Names::iterator position)
{
    rooms.free(position->first, position->second.cost);
    names.erase(position);
}

void Registry::erase(Names::iterator position)
{
    const std::string name = position->first;
    remove(position);
    listener(CCO::eventGone, name);
}

} // namespace installation
