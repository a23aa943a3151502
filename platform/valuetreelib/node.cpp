#include "valuetreelib/node.h"

#include "valuetreelib/mainthread.h"

#include <algorithm>

namespace values
{
Node::Node(const QString &path, Tree *owner) : TreeItem(path, true), owner(owner)
{
}

Node::~Node() = default;

void Node::SetValueDescriptor(const ValueDescriptor *newDescriptor, IObserver *originator)
{
    Q_ASSERT(isMainThread());
    if (newDescriptor == descriptor)
        return;
    descriptor = newDescriptor;
    NotifyObservers(ChangeCodeDescriptor, originator);
}

std::vector<TreeItem *> Node::GetTreeItems() const
{
    std::vector<TreeItem *> items;
    items.reserve(children.size());
    for (const std::unique_ptr<TreeItem> &child : children)
        items.push_back(child.get());
    return items;
}

void Node::hook(std::unique_ptr<TreeItem> child)
{
    child->parentNode = this;
    children.push_back(std::move(child));
}

std::unique_ptr<TreeItem> Node::unhook(const TreeItem *child)
{
    const auto found = std::find_if(children.begin(), children.end(),
                                    [child](const std::unique_ptr<TreeItem> &other) { return other.get() == child; });
    std::unique_ptr<TreeItem> unhooked = std::move(*found);
    children.erase(found);
    return unhooked;
}
} // namespace values
