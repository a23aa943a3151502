#pragma once

#include "korvebase/recordidentifier.h"

#include <bit>
#include <vector>

namespace korve
{

/// Numbers different identifiers from 0 on, in the order in which they come. It borrows them.
///
/// A flat table: in lists of 100 000 each node of a QSet or std::unordered_set is a cache miss, which takes several
/// times longer than the rest. What is looked at first, a byte for each place, stays in the processor's cache.
class IdentifierIndex
{
public:
    /// Has room for @p capacity identifiers.
    explicit IdentifierIndex(int capacity)
        : tags(std::bit_ceil(4 * static_cast<std::size_t>(capacity) + 1), empty), numbers(tags.size())
    {
        identifiers.reserve(static_cast<std::size_t>(capacity));
    }

    /// True when there was no equal one yet.
    bool insert(const RecordIdentifier &identifier)
    {
        const uint hash = hashOf(identifier);
        const std::size_t place = placeOf(identifier, hash);
        if (tags[place] != empty)
            return false;
        tags[place] = tagOf(hash);
        numbers[place] = size();
        identifiers.push_back(&identifier);
        return true;
    }

    /// The number of the equal one, or -1.
    int find(const RecordIdentifier &identifier) const
    {
        const std::size_t place = placeOf(identifier, hashOf(identifier));
        return tags[place] == empty ? -1 : numbers[place];
    }

    int size() const { return static_cast<int>(identifiers.size()); }
    const RecordIdentifier &operator[](int number) const { return *identifiers[static_cast<std::size_t>(number)]; }

private:
    static constexpr uchar empty = 0;

    /// Not the identifier's own hash alone: the same record can be on very many devices. The product spreads records
    /// that are numbered one after another, which would fill neighbouring places.
    static uint hashOf(const RecordIdentifier &identifier)
    {
        constexpr uint seed = 0x9E3779B1; // with any but 0, Qt takes the processor's own instructions
        const uint device = ::qHash(identifier.device, ::qHash(identifier.subSystemName, seed));
        const uint product = (qHash(identifier) ^ device) * seed;
        return product ^ (product >> 15);
    }

    static uchar tagOf(uint hash) { return static_cast<uchar>(hash >> 24 | 1); }

    /// Where an equal one is, or would be. Three of four places are empty, so the search ends soon.
    std::size_t placeOf(const RecordIdentifier &identifier, uint hash) const
    {
        const std::size_t mask = tags.size() - 1;
        const uchar tag = tagOf(hash);
        std::size_t place = hash & mask;
        while (tags[place] != empty && !(tags[place] == tag && (*this)[numbers[place]] == identifier))
            place = (place + 1) & mask;
        return place;
    }

    std::vector<uchar> tags;
    std::vector<int> numbers;
    std::vector<const RecordIdentifier *> identifiers;
};

} // namespace korve
