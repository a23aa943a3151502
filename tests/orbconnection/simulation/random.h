#pragma once

#include <cstdint>
#include <random>

namespace simulation
{
/// What decides everything in a run: a seed repeats it exactly, on every machine.
class Random
{
public:
    explicit Random(std::uint64_t seed) : engine(seed) {}

    /// From 0 to @p end, not with it.
    int below(int end) { return static_cast<int>(engine() % static_cast<std::uint64_t>(end)); }
    bool happens(int percent) { return below(100) < percent; }
    template <typename List> const auto &oneOf(const List &list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
    }

private:
    std::mt19937_64 engine; // the same numbers everywhere; the library's distributions are not
};
} // namespace simulation
