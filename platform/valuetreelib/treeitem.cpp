#include "valuetreelib/treeitem.h"

#include "coresupport/firstexception.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

namespace values
{
TreeItem::TreeItem(const QString &path, bool isNode) : path(path)
{
    bits.isNode = isNode;
}

TreeItem::~TreeItem()
{
    // Who began to hold the item after its removal was told has not heard of it yet.
    bits.state = ValueStateDeleted;
    FirstException trouble; // of a holder; nobody is left to hear of it
    trouble.attempt([this] { tellHolders(ChangeCodeState); });
    trouble.attempt([this] { tellHolders(ChangeCodeDeleted); });
}

QString TreeItem::name() const
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

Tree *TreeItem::tree() const
{
    if (bits.isNode)
        return static_cast<const Node *>(this)->owner;
    return parentNode ? parentNode->owner : nullptr;
}

QString TreeItem::below(const QString &relativePath) const
{
    return relativePath.startsWith(u'/') ? relativePath : path + u'/' + relativePath;
}

Node *TreeItem::findNode(const QString &relativePath) const
{
    if (relativePath.isEmpty())
        return bits.isNode ? const_cast<Node *>(static_cast<const Node *>(this)) : nullptr;
    const Tree *const home = tree();
    if (!home || (!bits.isNode && !relativePath.startsWith(u'/')))
        return nullptr;
    return home->findNode(below(relativePath));
}

ValueBase *TreeItem::findValue(const QString &relativePath) const
{
    if (relativePath.isEmpty())
        return bits.isNode ? nullptr : const_cast<ValueBase *>(static_cast<const ValueBase *>(this));
    const Tree *const home = tree();
    if (!home || (!bits.isNode && !relativePath.startsWith(u'/')))
        return nullptr;
    return home->findValue(below(relativePath));
}
} // namespace values
