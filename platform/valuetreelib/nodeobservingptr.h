#pragma once

#include "valuetreelib/itemobservation.h"
#include "valuetreelib/nodeptr.h"

namespace values
{
/// Holds one node and lets an observer observe it, as ValueObservingPtr does for values.
class VALUETREELIB_EXPORT NodeObservingPtr : public NodePtr
{
public:
    /// Borrows @p observer, which must outlive this.
    explicit NodeObservingPtr(IObserver &observer);

private:
    void itemChanged(TreeItem *newItem) override;

    ItemObservation observation;
};
} // namespace values
