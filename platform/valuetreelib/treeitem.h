#pragma once

#include "valuetreelib/ideletesubject.h"
#include "valuetreelib/valuecodes.h"

#include <QString>

namespace values
{
class Node;
class Tree;
class ValueBase;

/// What stands in the tree under a name: a node or a value.
///
/// Owned by its parent node once it is in a tree. Without virtual operations: ValueBase publishes the order of its own.
class VALUETREELIB_EXPORT TreeItem : public Observable, public virtual IDeleteSubject
{
public:
    ~TreeItem() override;

    QString name() const;
    /// The absolute path ("/a/b"; "/" for the root); of a value that is in no tree, only the name.
    QString GetPathName() const { return path; }
    bool isNode() const { return bits.isNode; }
    /// Has been removed from its tree, or was told so by its state.
    bool isGone() const { return bits.state == ValueStateDeleted; }
    /// Null for the root and for what is in no tree.
    Node *parent() const { return parentNode; }
    /// The tree that this item stands in, or null.
    Tree *tree() const;

    /// Look-up by a path relative to this item, or absolute from the root when it begins with "/". Null when there is
    /// nothing; never creates. The empty path yields the item itself. Nothing is below a value.
    Node *findNode(const QString &relativePath) const;
    ValueBase *findValue(const QString &relativePath) const;

protected:
    TreeItem(const QString &path, bool isNode);
    // Small facts, also those that only a value has: here they fill a gap that every item has anyway.
    struct Bits {
        unsigned state : 4 = ValueStateValid;
        unsigned isNode : 1 = 0;
        unsigned optimized : 1 = 1;
        unsigned heldCodes : 6 = 0; // bit n: notification n waits for the end of the transaction; bit 0: forced
        unsigned transactions : 20 = 0;
    };

private:
    friend class ItemIndex;
    friend class Node;
    friend class SubtreeRemoval;
    friend class Tree;
    friend class TreeListeners;
    friend class ValueBase;

    QString below(const QString &relativePath) const;

    QString path;
    Node *parentNode = nullptr;
    Bits bits;
    quint32 place = 0; // among the children of the parent
};
} // namespace values
