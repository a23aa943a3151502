#pragma once

#include "valuetreelib/treeitem.h"

namespace values
{
/// One reason for an observer to be among the observers of an item; the observer leaves with the last reason for it.
class VALUETREELIB_EXPORT ItemObservation final : public IObserver
{
public:
    /// Borrows @p observer, which may be null; then this does nothing.
    explicit ItemObservation(IObserver *observer);
    ItemObservation(const ItemObservation &other);
    ItemObservation &operator=(const ItemObservation &other);
    ~ItemObservation() override;

    /// Takes the observer from the item so far to @p newItem, or to none.
    void observe(TreeItem *newItem);
    void Update(Observable *subject, TChangeCode code) override;

private:
    IObserver *observer;
    TreeItem *item = nullptr; // stays until the item is destroyed, which is after its holders are told that it goes
};
} // namespace values
