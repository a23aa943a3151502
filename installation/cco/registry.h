#pragma once

#include "installation/cco/liveness.h"
#include "installation/cco/namerooms.h"

#include <omniORB4/CORBA.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace installation
{

/// The names of one central service, each with an object or a list of values behind it.
///
/// Thread: any. The listener hears of every change under the lock, so that it hears of them in their order; it must be
/// quick and must not call back.
class Registry
{
public:
    using Values = std::vector<std::string>;
    using Content = std::variant<CORBA::Object_var, Values>;
    /// @p event is CCO::eventAvailable or CCO::eventGone.
    using Listener = std::function<void(CORBA::ULong event, const std::string &name)>;

    struct Entry {
        std::string name;
        Content content;
        std::uint64_t holding;      ///< another number for each holder of the name
        std::uint64_t registration; ///< another number for each repetition, too
        std::string owner;          ///< the address that has registered it
    };
    /// What becomes of a registration.
    struct Outcome {
        bool isNew = false;            ///< nobody had the name
        std::optional<Entry> holder{}; ///< what has it, when that is something else; nothing is changed then
    };

    explicit Registry(Listener listener);

    /// Gives a name that nobody has to @p content, or notes that it is repeated. @p owner is the address that asks for it.
    /// @throws CORBA::NO_RESOURCES when there is no room for it.
    Outcome offer(const std::string &name, const Content &content, const std::string &owner);
    /// Gives the name of @p holder to @p content; false if the holder has registered again or is gone since it was read.
    /// @throws CORBA::NO_RESOURCES when there is no room for it.
    bool replace(const Entry &holder, const Content &content, const std::string &owner);
    /// Takes the name of @p holder away; false if the holder has registered again or is gone since it was read.
    bool take(const Entry &holder);
    /// Takes note of a look at what @p entry stands for, and removes it when that was its end: false when it stays, also
    /// since it was registered again meanwhile.
    bool drop(const Entry &entry, Answer answer);

    std::optional<Entry> find(const std::string &name) const;
    /// Relative to @p folder, which ends in "/" or is empty; sorted.
    std::vector<std::string> namesBelow(const std::string &folder) const;
    std::vector<Entry> entries() const;

private:
    struct Registered {
        Content content;
        NameRooms::Cost cost;
        std::uint64_t holding;
        std::uint64_t registration = holding;
        Silence silence{};
    };
    using Names = std::map<std::string, Registered>;

    static Entry entryOf(const Names::value_type &name);
    Names::iterator positionOf(const Entry &holder);
    void add(const std::string &name, const Content &content, const NameRooms::Cost &cost);
    void remove(Names::iterator position);
    void erase(Names::iterator position);

    const Listener listener;
    mutable std::mutex mutex; // guards the three members below
    Names names;
    NameRooms rooms;
    std::uint64_t registrations = 0;
};

} // namespace installation
