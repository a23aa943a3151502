#pragma once

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
        std::uint64_t registration; ///< counts up with every put
    };

    explicit Registry(Listener listener);

    /// Replaces what the name had. Repeating what is there is no change.
    /// @throws CORBA::NO_RESOURCES when there are too many names.
    void put(const std::string &name, Content content);
    /// Removes the name if it has an object, which the caller releases; nil otherwise.
    CORBA::Object_ptr takeObject(const std::string &name);
    /// Removes the name if it has values.
    void takeValues(const std::string &name);
    /// Removes a name that turned out to be dead; false if it was registered again since @p entry was read.
    bool drop(const Entry &entry);

    std::optional<Content> find(const std::string &name) const;
    /// Relative to @p folder, which ends in "/" or is empty; sorted.
    std::vector<std::string> namesBelow(const std::string &folder) const;
    std::vector<Entry> entries() const;

private:
    struct Registered {
        Content content;
        std::uint64_t registration;
    };
    using Names = std::map<std::string, Registered>;

    void erase(Names::iterator position);

    const Listener listener;
    mutable std::mutex mutex; // guards the two members below
    Names names;
    std::uint64_t registrations = 0;
};

} // namespace installation
