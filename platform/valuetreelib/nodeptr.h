#pragma once

#include "valuetreelib/itemholder.h"

namespace values
{
/// Holds one node, and null once that is gone from the tree. Copies hold for themselves.
class VALUETREELIB_EXPORT NodePtr : public ItemHolder
{
public:
    Node *Get() const;
    operator Node *() const { return Get(); }
    Node *operator->() const { return Get(); }

    void attach(Node *node);
    /// Lets go first; then holds the node at @p path of the process's tree, if there is one.
    bool GetFromTree(const QString &path);
};
} // namespace values
