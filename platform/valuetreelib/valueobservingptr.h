#pragma once

#include "valuetreelib/itemobservation.h"
#include "valuetreelib/valueptr.h"

namespace values
{
/// Holds one value of class T and lets an observer observe it. The observer stays as long as one holder wants it.
///
/// The observer still hears of the value's removal, when this is null already: compare its subject with a pointer kept.
template <typename T> class ValueObservingPtr : public ValuePtr<T>
{
public:
    /// Borrows @p observer, which must outlive this.
    explicit ValueObservingPtr(IObserver *observer) : observation(observer) {}

private:
    void itemChanged(TreeItem *newItem) override { observation.observe(newItem); }

    ItemObservation observation;
};
} // namespace values
