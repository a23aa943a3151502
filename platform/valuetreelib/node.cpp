#include "valuetreelib/node.h"

#include "valuetreelib/mainthread.h"

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
    items.reserve(children.size() - gaps);
    for (const std::unique_ptr<TreeItem> &child : children)
        if (child)
            items.push_back(child.get());
    return items;
}

void Node::hook(std::unique_ptr<TreeItem> child)
{
    child->parentNode = this;
    child->place = static_cast<quint32>(children.size());
    children.push_back(std::move(child));
}

std::unique_ptr<TreeItem> Node::unhook(const TreeItem &child)
{
    std::unique_ptr<TreeItem> unhooked = std::move(children[child.place]);
    if (2 * ++gaps > children.size())
        closeGaps();
    return unhooked;
}

void Node::closeGaps()
{
    std::erase(children, nullptr);
    gaps = 0;
    for (std::size_t place = 0; place < children.size(); ++place)
        children[place]->place = static_cast<quint32>(place);
}
} // namespace values
