#include "valuetreelib/nodeobservingptr.h"

#include "valuetreelib/node.h"

namespace values
{
NodeObservingPtr::NodeObservingPtr(IObserver &observer) : observation(&observer)
{
}

void NodeObservingPtr::itemChanged(TreeItem *newItem)
{
    observation.observe(newItem);
}
} // namespace values
