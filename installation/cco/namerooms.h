#pragma once

#include "orbconnection/refusednames.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace installation
{

/// Counts what is kept of names, and for whom, so that nobody can have all of it.
///
/// Managers, recorders and the service itself have rooms of their own, which no other name can fill. One address gets
/// at most a quarter of a room.
class NameRooms
{
public:
    static constexpr std::size_t mostNames = 4000; ///< of a room
    static constexpr std::size_t mostBytes = 4 << 20;

    /// What one name costs, and who has registered it.
    struct Cost {
        std::size_t bytes;
        std::string owner; ///< an address
    };

    bool hasRoom(std::string_view name, const Cost &cost) const;
    void take(std::string_view name, const Cost &cost);
    /// Gives back what was taken.
    void free(std::string_view name, const Cost &cost);

private:
    struct Use {
        bool allows(std::size_t more, std::size_t share) const;

        std::size_t names = 0;
        std::size_t bytes = 0;
    };
    struct Room {
        std::string_view folder;
        Use all{};
        std::map<std::string, Use> owners{};
    };

    std::size_t roomOf(std::string_view name) const;

    std::array<Room, 4> rooms{Room{"KorveManager/"}, Room{"KorveRecorder/"}, Room{CorbaCommon::refusedNames}, Room{""}};
};

} // namespace installation
