#include "valuetreelib/itemindex.h"

#include "valuetreelib/treeitem.h"

#include <QHash>

namespace values
{
namespace
{
unsigned hashOf(QStringView path)
{
    return qHash(path, static_cast<unsigned>(qGlobalQHashSeed()));
}
} // namespace

TreeItem *ItemIndex::find(QStringView path) const
{
    return slots.empty() ? nullptr : slots[placeOf(path, hashOf(path))].item;
}

bool ItemIndex::insert(TreeItem &item)
{
    if (8 * (count + 1) > 7 * slots.size())
        grow();
    const unsigned hash = hashOf(item.path);
    Slot &slot = slots[placeOf(item.path, hash)];
    if (slot.item)
        return false;
    slot = {&item, hash};
    ++count;
    return true;
}

std::size_t ItemIndex::placeOf(QStringView path, unsigned hash) const
{
    std::size_t position = home(hash);
    while (slots[position].item && (slots[position].hash != hash || slots[position].item->path != path))
        position = next(position);
    return position;
}

void ItemIndex::erase(const TreeItem &item)
{
    std::size_t hole = home(hashOf(item.path));
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
        if (!slot.item)
            continue;
        std::size_t position = home(slot.hash);
        while (slots[position].item)
            position = next(position);
        slots[position] = slot;
    }
}
} // namespace values
