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

    void add(const std::string &workstation)
    {
        const std::scoped_lock lock(mutex);
        if (!containsUnlocked(workstation) && workstations.size() < maximum)
            workstations.push_back(workstation);
    }

    void remove(const std::string &workstation)
    {
        const std::scoped_lock lock(mutex);
        std::erase_if(workstations, [&](const std::string &known) { return sameName(known, workstation); });
    }

    bool contains(const std::string &workstation) const
    {
        const std::scoped_lock lock(mutex);
        return containsUnlocked(workstation);
    }

private:
    bool containsUnlocked(const std::string &workstation) const
    {
        return std::ranges::any_of(workstations,
                                   [&](const std::string &known) { return sameName(known, workstation); });
    }

    mutable std::mutex mutex;
    std::vector<std::string> workstations;
};

} // namespace installation
