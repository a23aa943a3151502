#pragma once

#include "valuetreelib/treeitem.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace values
{
class ITreeListener;
class TreeListeners;

/// The items of one process (or of one side, where a program joins several), found by their absolute paths.
///
/// In a path, empty parts are ignored and a missing leading "/" is added. A value and a node may stand at one path.
/// The tree owns its values; who holds one does not keep it alive, and values stay when nobody holds them.
/// Thread: main; never blocks.
class VALUETREELIB_EXPORT Tree
{
public:
    /// The deepest path that can be added has this many parts.
    static constexpr int maxDepth = 256;
    /// The longest one has this many characters.
    static constexpr int maxPathLength = 65535;
    /// Whether an item can be added at @p path, by its depth and length.
    static bool canHold(const QString &path);

    Tree();
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;
    ~Tree(); // removes everything first
    /// The tree of the process; it is never destroyed.
    static Tree &Instance();

    /// Adds @p value under @p parentPath and its name, with the nodes that are missing. False, with the value deleted,
    /// when there is such a value already, it has no name, or the path is too deep or too long.
    bool addValue(const QString &parentPath, std::unique_ptr<ValueBase> value, IObserver *originator = nullptr);
    /// The same, where the value gets its name from @p path, and the nodes above it are those of the path.
    bool addValueAt(const QString &path, std::unique_ptr<ValueBase> value, IObserver *originator = nullptr);
    /// The node at @p path, added if necessary; null when the path is too deep or too long.
    Node *addNode(const QString &path, IObserver *originator = nullptr);

    /// Removes the value, or the node with all that is below it (of the root, only that). False when it is not there.
    ///
    /// In this order: listeners are told, the items are out of the tree, the parent's observers hear ChangeCodeNodeItems;
    /// holders and then observers of each node (ChangeCodeDeleted), top-down; then for each value its holders, which
    /// null themselves, and its observers, ChangeCodeState (now ValueStateDeleted) and ChangeCodeDeleted.
    bool removeValue(const QString &path, IObserver *originator = nullptr);
    bool removeNode(const QString &path, IObserver *originator = nullptr);

    /// One holder has let go of the value at @p path: only told to listeners, never deletes.
    void release(const QString &path);
    /// Accepted for programs that announce their start to the tree; without effect.
    void configure(std::nullptr_t) {}

    /// Borrows @p listener until it is removed. Several paths make several entries.
    void addListener(const QString &path, ITreeListener *listener);
    void removeListener(const ITreeListener *listener);

    /// Null when there is none; never creates.
    ValueBase *findValue(const QString &path) const;
    Node *findNode(const QString &path) const;
    /// The node at @p path and all that is below it, each node before its items, those in the order of the tree.
    std::vector<TreeItem *> subtree(const QString &path) const;

private:
    friend class ValueBase;
    class Private;

    TreeListeners &listeners() const;

    const std::unique_ptr<Private> d;
};
} // namespace values
