#pragma once

#include "valuetreelib/treeitem.h"

namespace values
{
/// What the pointers to tree items have in common: holds one item, and null instead once that goes.
class VALUETREELIB_EXPORT ItemHolder : public IObserver
{
public:
    /// Told by the item's delete side; looks at ChangeCodeState alone. An item that has gone is not released.
    void Update(Observable *subject, TChangeCode code) override;
    /// Lets go of the item, and says so to the tree if it is a value.
    void Reset();

protected:
    ItemHolder() = default;
    ItemHolder(const ItemHolder &other);
    ItemHolder &operator=(const ItemHolder &other);
    ~ItemHolder() override;

    /// Holds @p newItem instead; the same one again changes nothing.
    void attachItem(TreeItem *newItem);
    TreeItem *heldItem() const { return item; }

private:
    /// Called when the holder has taken another item, or let go of its own (null), by itself. Not for copies.
    virtual void itemChanged(TreeItem *newItem);
    void hold(TreeItem *newItem);

    TreeItem *item = nullptr;
};
} // namespace values
