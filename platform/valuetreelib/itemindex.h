#pragma once

#include <QString>

#include <vector>

namespace values
{
class TreeItem;

/// Finds items by their path: a hash table with open addressing, so that a look-up touches few lines of memory and
/// nothing is allocated per item.
class ItemIndex
{
public:
    /// Null when there is none. @p path must be normalised to be found.
    TreeItem *find(QStringView path) const;

    /// False, when there is one of this path already, which stays.
    bool insert(TreeItem &item);
    void erase(const TreeItem &item);

private:
    struct Slot {
        TreeItem *item = nullptr; // null: free
        unsigned hash = 0;
    };

    std::size_t home(unsigned hash) const { return hash & (slots.size() - 1); }
    std::size_t next(std::size_t position) const { return (position + 1) & (slots.size() - 1); }
    /// The slot of the item at @p path, or the free one where it would stand.
    std::size_t placeOf(QStringView path, unsigned hash) const;
    void grow();

    std::vector<Slot> slots; // a power of two of them, at most seven eighths taken
    std::size_t count = 0;
};
} // namespace values
