#include "valuetreelib/itemholder.h"

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <utility>

namespace values
{
ItemHolder::ItemHolder(const ItemHolder &other) : IObserver(other)
{
    hold(other.item);
}

ItemHolder &ItemHolder::operator=(const ItemHolder &other)
{
    hold(other.item);
    return *this;
}

ItemHolder::~ItemHolder()
{
    ItemHolder::Reset();
}

void ItemHolder::Update(Observable *, TChangeCode code)
{
    if (code != ChangeCodeState || !item || !item->isGone())
        return;
    item->removeDeleteObserver(this);
    item = nullptr;
}

void ItemHolder::hold(TreeItem *newItem)
{
    if (newItem == item)
        return;
    if (item)
        item->removeDeleteObserver(this);
    item = newItem;
    if (item)
        item->addDeleteObserver(this);
}

void ItemHolder::attachItem(TreeItem *newItem)
{
    if (newItem == item)
        return;
    hold(newItem);
    itemChanged(newItem);
}

void ItemHolder::Reset()
{
    TreeItem *const held = std::exchange(item, nullptr);
    itemChanged(nullptr);
    if (!held)
        return;
    held->removeDeleteObserver(this);
    Tree *const home = held->tree();
    if (home && !held->isNode())
        home->release(held->GetPathName());
}

void ItemHolder::itemChanged(TreeItem *)
{
}
} // namespace values
