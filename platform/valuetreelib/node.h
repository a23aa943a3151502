#pragma once

#include "valuetreelib/treeitem.h"

#include <memory>
#include <vector>

namespace values
{
class ValueDescriptor;

/// An inner item of the tree. Made by the tree alone; owns what stands below it.
///
/// Observers are told ChangeCodeChildAdded and then ChangeCodeNodeItems when items were added, only the latter when some
/// were removed, and ChangeCodeDeleted when the node itself goes.
class VALUETREELIB_EXPORT Node : public TreeItem
{
public:
    ~Node() override;

    /// Borrows @p newDescriptor, which must outlive the node or be replaced by null. Another one than before is told to
    /// the observers.
    void SetValueDescriptor(const ValueDescriptor *newDescriptor, IObserver *originator);

    /// A copy, in the order in which the items were added. A value and a node may bear the same name.
    std::vector<TreeItem *> GetTreeItems() const;
    bool isEmpty() const { return gaps == children.size(); }
    const ValueDescriptor *valueDescriptor() const { return descriptor; }

private:
    friend class SubtreeRemoval;
    friend class Tree;
    friend class TreeItem;

    Node(const QString &path, Tree *owner);
    void hook(std::unique_ptr<TreeItem> child);
    std::unique_ptr<TreeItem> unhook(const TreeItem &child);
    void closeGaps();

    // In the order in which they were added. Who goes leaves a null behind, so that many can go one by one.
    std::vector<std::unique_ptr<TreeItem>> children;
    std::size_t gaps = 0;
    Tree *owner; // null once the node has been removed
    const ValueDescriptor *descriptor = nullptr;
};
} // namespace values
