#pragma once

#include "valuetreelib/valuebase.h"

#include <memory>
#include <vector>

namespace values
{
class ItemIndex;

/// Items on their way out of the tree. Takes them out of the indexes at once; owns them until all have been told.
class SubtreeRemoval
{
public:
    /// @p top has been unhooked from its parent.
    SubtreeRemoval(std::unique_ptr<TreeItem> top, ItemIndex &nodeIndex, ItemIndex &valueIndex);
    SubtreeRemoval(const SubtreeRemoval &) = delete;
    SubtreeRemoval &operator=(const SubtreeRemoval &) = delete;
    ~SubtreeRemoval();

    /// Each node before what was below it.
    const std::vector<std::unique_ptr<TreeItem>> &removedItems() const { return items; }
    /// Tells holders and observers that their items go: first all nodes, then the values.
    void tell(IObserver *originator);

private:
    void takeOut(TreeItem &item, ItemIndex &nodeIndex, ItemIndex &valueIndex);
    static void tellNode(TreeItem &node, IObserver *originator);
    static void tellValue(TreeItem &value, IObserver *originator);

    std::vector<std::unique_ptr<TreeItem>> items;
};
} // namespace values
