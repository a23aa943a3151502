#include "valuetreelib/nodeptr.h"

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace values
{
Node *NodePtr::Get() const
{
    return static_cast<Node *>(heldItem());
}

void NodePtr::attach(Node *node)
{
    attachItem(node);
}

bool NodePtr::GetFromTree(const QString &path)
{
    Reset();
    attach(Tree::Instance().findNode(path));
    return Get();
}
} // namespace values
