#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

namespace mirror
{
/// A hash table for keys that are numbers or pointers, of which 0 is none. With open addressing: no memory of its own
/// for each entry, so that very many can be entered at once.
template <typename Key, typename Value> class NumberTable
{
public:
    /// Value() when there is no such key.
    Value value(Key key) const
    {
        if (slots.empty())
            return Value();
        const Slot &slot = slots[placeOf(key)];
        return slot.key ? slot.value : Value();
    }
    std::size_t size() const { return count; }
    /// Makes room for @p keys in all.
    void reserve(std::size_t keys)
    {
        if (4 * keys > 3 * slots.size())
            grow(std::bit_ceil(std::max<std::size_t>(64, 4 * keys / 3 + 1)));
    }
    /// Replaces what the key had.
    void insert(Key key, Value value)
    {
        reserve(count + 1);
        Slot &slot = slots[placeOf(key)];
        count += !slot.key;
        slot = {key, value};
    }
    void remove(Key key)
    {
        std::size_t hole = slots.empty() ? 0 : placeOf(key);
        if (slots.empty() || !slots[hole].key)
            return;
        // Whoever was pushed past the hole moves up, so that every search still ends at a free slot.
        for (std::size_t place = next(hole); slots[place].key; place = next(place)) {
            if (((place - home(slots[place].key)) & mask()) >= ((place - hole) & mask()))
                slots[std::exchange(hole, place)] = slots[place];
        }
        slots[hole] = {};
        --count;
    }
    void clear() { *this = NumberTable(); }

private:
    struct Slot {
        Key key{};
        Value value{};
    };

    std::size_t mask() const { return slots.size() - 1; }
    std::size_t next(std::size_t place) const { return (place + 1) & mask(); }
    /// Where the search for @p key begins. Neighbours in number or memory stay close: they are entered one after another.
    std::size_t home(Key key) const
    {
        constexpr int unusedBits = std::is_pointer_v<Key> ? 4 : 0; // what is on the heap stands at multiples of 16
        return (std::size_t(key) >> unusedBits) & mask();
    }
    /// The slot of @p key, or the free one where it would stand.
    std::size_t placeOf(Key key) const
    {
        std::size_t place = home(key);
        while (slots[place].key && slots[place].key != key)
            place = next(place);
        return place;
    }
    void grow(std::size_t size)
    {
        std::vector<Slot> old(size);
        old.swap(slots);
        for (const Slot &slot : old)
            if (slot.key)
                slots[placeOf(slot.key)] = slot;
    }

    std::vector<Slot> slots; // a power of two of them, at most three quarters taken
    std::size_t count = 0;
};
} // namespace mirror
