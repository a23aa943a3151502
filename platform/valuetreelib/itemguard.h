#pragma once

#include "valuetreelib/treeitem.h"

namespace values
{
/// Tells on the stack whether an item survived what an observer did.
class ItemGuard final : public IObserver
{
public:
    explicit ItemGuard(TreeItem &item) : item(&item) { item.addDeleteObserver(this); }
    ItemGuard(const ItemGuard &) = delete;
    ItemGuard &operator=(const ItemGuard &) = delete;
    ~ItemGuard() override
    {
        if (item)
            item->removeDeleteObserver(this);
    }
    void Update(Observable *, TChangeCode code) override
    {
        if (code == ChangeCodeDeleted)
            item = nullptr;
    }
    bool isAlive() const { return item; }

private:
    TreeItem *item;
};
} // namespace values
