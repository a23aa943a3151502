#include "valuetreelib/itemindex.h"

#include "valuetreelib/treeitem.h"

#include <QHash>

namespace values
{
namespace
{
unsigned hashOf(const QString &path)
{
    return qHash(path, static_cast<unsigned>(qGlobalQHashSeed()));
}
} // namespace

TreeItem *ItemIndex::find(const QString &path) const
{
    if (slots.empty())
        return nullptr;
    const unsigned hash = hashOf(path);
    for (std::size_t position = hash & (slots.size() - 1); slots[position].item; position = next(position)) {
        if (slots[position].hash == hash && slots[position].item->path == path)
            return slots[position].item;
    }
    return nullptr;
}

void ItemIndex::insert(TreeItem &item)
{
    if (8 * ++count > 7 * slots.size())
        grow();
    place({&item, hashOf(item.path)});
}

void ItemIndex::place(const Slot &slot)
{
    std::size_t position = slot.hash & (slots.size() - 1);
    while (slots[position].item)
        position = next(position);
    slots[position] = slot;
}

void ItemIndex::erase(const TreeItem &item)
{
    std::size_t hole = hashOf(item.path) & (slots.size() - 1);
    while (slots[hole].item != &item)
        hole = next(hole);
    // Whoever was pushed past the hole moves up, so that every search still ends at a free slot.
    const std::size_t mask = slots.size() - 1;
    for (std::size_t position = next(hole); slots[position].item; position = next(position)) {
        if (((position - slots[position].hash) & mask) >= ((position - hole) & mask)) {
            slots[hole] = slots[position];
            hole = position;
        }
    }
    slots[hole] = {};
    --count;
}

void ItemIndex::grow()
{
    std::vector<Slot> old(slots.empty() ? 64 : 2 * slots.size());
    old.swap(slots);
    for (const Slot &slot : old) {
        if (slot.item)
            place(slot);
    }
}
} // namespace values
