#include "installation/cco/namerooms.h"

#include <algorithm>

namespace installation
{

namespace
{
constexpr std::size_t shareOfOneAddress = 4;
}

bool NameRooms::hasRoom(std::string_view name, const Cost &cost) const
{
    const Room &room = rooms[roomOf(name)];
    const auto known = room.owners.find(cost.owner);
    const Use own = known == room.owners.end() ? Use() : known->second;
    return room.all.allows(cost.bytes, 1) && own.allows(cost.bytes, shareOfOneAddress);
}

void NameRooms::take(std::string_view name, const Cost &cost)
{
    Room &room = rooms[roomOf(name)];
    for (Use *use : {&room.all, &room.owners[cost.owner]}) {
        ++use->names;
        use->bytes += cost.bytes;
    }
}

void NameRooms::free(std::string_view name, const Cost &cost)
{
    Room &room = rooms[roomOf(name)];
    const auto owner = room.owners.find(cost.owner);
    for (Use *use : {&room.all, &owner->second}) {
        --use->names;
        use->bytes -= cost.bytes;
    }
    if (owner->second.names == 0)
        room.owners.erase(owner);
}

bool NameRooms::Use::allows(std::size_t more, std::size_t share) const
{
    return names < mostNames / share && bytes + more <= mostBytes / share;
}

std::size_t NameRooms::roomOf(std::string_view name) const
{
    const auto room =
        std::ranges::find_if(rooms, [&](const Room &candidate) { return name.starts_with(candidate.folder); });
    return static_cast<std::size_t>(room - rooms.begin()); // the last one takes every name
}

} // namespace installation
