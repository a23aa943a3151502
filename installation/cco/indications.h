#pragma once

#include "installation/cco/namepath.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

namespace installation
{

/// The workstations that have announced themselves. Thread: any.
class Indications
{
public:
    static constexpr std::size_t maximum = 1000; ///< further ones are not kept
    static constexpr std::size_t maximumOfOneAddress = maximum / 4;
    static constexpr std::size_t maximumLength = 255; ///< of a name; longer ones are not kept

    /// @p owner is the address that announces it.
    void add(const std::string &workstation, const std::string &owner)
    {
        const std::scoped_lock lock(mutex);
        const auto own = std::ranges::count(workstations, owner, &Indicated::owner);
        if (!containsUnlocked(workstation) && workstations.size() < maximum &&
            static_cast<std::size_t>(own) < maximumOfOneAddress && workstation.size() <= maximumLength)
            workstations.push_back({workstation, owner});
    }

    void remove(const std::string &workstation)
    {
        const std::scoped_lock lock(mutex);
        std::erase_if(workstations, [&](const Indicated &known) { return sameName(known.name, workstation); });
    }

    bool contains(const std::string &workstation) const
    {
        const std::scoped_lock lock(mutex);
        return containsUnlocked(workstation);
    }

private:
    struct Indicated {
        std::string name;
        std::string owner;
    };

    bool containsUnlocked(const std::string &workstation) const
    {
        return std::ranges::any_of(workstations,
                                   [&](const Indicated &known) { return sameName(known.name, workstation); });
    }

    mutable std::mutex mutex;
    std::vector<Indicated> workstations;
};

} // namespace installation
