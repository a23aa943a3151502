#include "valuetreelib/subtreeremoval.h"

#include "coresupport/firstexception.h"
#include "valuetreelib/itemindex.h"
#include "valuetreelib/node.h"

#include <iterator>

namespace values
{
SubtreeRemoval::SubtreeRemoval(std::unique_ptr<TreeItem> top, ItemIndex &nodeIndex, ItemIndex &valueIndex)
{
    std::vector<std::unique_ptr<TreeItem>> pending;
    pending.push_back(std::move(top));
    while (!pending.empty()) {
        items.push_back(std::move(pending.back()));
        pending.pop_back();
        TreeItem &item = *items.back();
        takeOut(item, nodeIndex, valueIndex);
        if (!item.isNode())
            continue;
        auto &node = static_cast<Node &>(item);
        node.closeGaps();
        pending.insert(pending.end(), std::make_move_iterator(node.children.rbegin()),
                       std::make_move_iterator(node.children.rend()));
        node.children.clear();
    }
}

SubtreeRemoval::~SubtreeRemoval()
{
    while (!items.empty())
        items.pop_back();
}

void SubtreeRemoval::takeOut(TreeItem &item, ItemIndex &nodeIndex, ItemIndex &valueIndex)
{
    item.parentNode = nullptr;
    if (item.isNode()) {
        static_cast<Node &>(item).owner = nullptr;
        nodeIndex.erase(item);
    } else {
        valueIndex.erase(item);
    }
}

void SubtreeRemoval::tell(IObserver *originator)
{
    FirstException trouble;
    for (const std::unique_ptr<TreeItem> &item : items) {
        if (item->isNode())
            trouble.attempt([&] { tellNode(*item, originator); });
    }
    for (const std::unique_ptr<TreeItem> &item : items) {
        if (!item->isNode())
            trouble.attempt([&] { tellValue(*item, originator); });
    }
    trouble.rethrow();
}

void SubtreeRemoval::tellNode(TreeItem &node, IObserver *originator)
{
    node.bits.state = ValueStateDeleted;
    FirstException trouble;
    trouble.attempt([&] { node.tellHolders(ChangeCodeState); });
    trouble.attempt([&] { node.NotifyObservers(ChangeCodeDeleted, originator); });
    trouble.rethrow();
}

void SubtreeRemoval::tellValue(TreeItem &value, IObserver *originator)
{
    value.bits.state = ValueStateDeleted;
    FirstException trouble;
    trouble.attempt([&] { value.tellHolders(ChangeCodeState); });
    // Past a transaction that may be open: nobody would end it.
    trouble.attempt([&] { value.NotifyObservers(ChangeCodeState, originator); });
    trouble.attempt([&] { value.NotifyObservers(ChangeCodeDeleted, originator); });
    trouble.rethrow();
}
} // namespace values
