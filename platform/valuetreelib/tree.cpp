#include "valuetreelib/tree.h"

#include "coresupport/firstexception.h"
#include "coresupport/trace.h"
#include "valuetreelib/itemguard.h"
#include "valuetreelib/itemindex.h"
#include "valuetreelib/mainthread.h"
#include "valuetreelib/node.h"
#include "valuetreelib/subtreeremoval.h"
#include "valuetreelib/treelisteners.h"
#include "valuetreelib/treepath.h"

#include <QVarLengthArray>

namespace values
{
namespace
{
constexpr char sourceName[] = "valuetreelib/tree";

/// Looks @p path up as it is given, which is nearly always normalised, and only then in its normal form.
TreeItem *lookUp(const ItemIndex &index, const QString &path)
{
    Q_ASSERT(isMainThread());
    TreeItem *const item = index.find(path);
    return item || isNormalizedPath(path) ? item : index.find(normalizedPath(path));
}

/// Reserves exactly what is needed: every value keeps its path.
QString joined(const QString &parentPath, const QString &name)
{
    QString path;
    path.reserve(parentPath.size() + name.size() + 1);
    path += parentPath;
    if (!path.endsWith(u'/'))
        path += u'/';
    return path += name;
}

bool hasName(const QString &path)
{
    return !path.isEmpty() && !path.endsWith(u'/');
}

bool fits(const QString &normalizedPath)
{
    // Each part takes two characters at least.
    return normalizedPath.size() <= Tree::maxPathLength
        && (normalizedPath.size() <= 2 * Tree::maxDepth || normalizedPath.count(u'/') <= Tree::maxDepth);
}

void refuse(const QString &path, const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("cannot add \"%1\": %2").arg(path.left(200), QLatin1String(reason)); });
}
} // namespace

class Tree::Private
{
public:
    explicit Private(Tree *tree) : tree(tree), root(new Node(QStringLiteral("/"), tree)) { nodes.insert(*root); }

    /// Items that are added together, below one node that was there before.
    struct Addition {
        Node *grown = nullptr;
        QVarLengthArray<TreeItem *, 8> items; // nodes before what is below them
    };

    Node *ensureNode(QStringView path, Addition &addition);
    void hook(Node &parent, std::unique_ptr<TreeItem> item, Addition &addition);
    void tell(const Addition &addition, IObserver *originator);
    void remove(TreeItem &item, IObserver *originator);
    void removeBelowRoot(IObserver *originator);

    Tree *const tree;
    ItemIndex values;
    ItemIndex nodes;
    const std::unique_ptr<Node> root;
    TreeListeners listeners;
};

Node *Tree::Private::ensureNode(QStringView path, Addition &addition)
{
    std::vector<QStringView> missing;
    QStringView above = path;
    TreeItem *found;
    while (!(found = nodes.find(above))) {
        missing.push_back(above);
        above = parentPath(above);
    }
    auto *node = static_cast<Node *>(found);
    addition.grown = node;
    for (; !missing.empty(); missing.pop_back()) {
        auto *const child = new Node(missing.back().toString(), tree);
        hook(*node, std::unique_ptr<TreeItem>(child), addition);
        nodes.insert(*child);
        node = child;
    }
    return node;
}

void Tree::Private::hook(Node &parent, std::unique_ptr<TreeItem> item, Addition &addition)
{
    addition.items.push_back(item.get());
    parent.hook(std::move(item));
}

void Tree::Private::tell(const Addition &addition, IObserver *originator)
{
    for (TreeItem *item : addition.items)
        listeners.itemAdded(*item, originator);
    // The added nodes gained children too, but nobody can observe them yet.
    if (!addition.grown->hasObservers())
        return;
    const ItemGuard guard(*addition.grown);
    FirstException trouble;
    trouble.attempt([&] { addition.grown->NotifyObservers(ChangeCodeChildAdded, originator); });
    if (guard.isAlive())
        trouble.attempt([&] { addition.grown->NotifyObservers(ChangeCodeNodeItems, originator); });
    trouble.rethrow();
}

void Tree::Private::remove(TreeItem &item, IObserver *originator)
{
    Node &parent = *item.parentNode;
    SubtreeRemoval removal(parent.unhook(item), nodes, values);
    for (const std::unique_ptr<TreeItem> &removed : removal.removedItems())
        listeners.itemRemoved(*removed, originator);
    FirstException trouble;
    trouble.attempt([&] { parent.NotifyObservers(ChangeCodeNodeItems, originator); });
    trouble.attempt([&] { removal.tell(originator); });
    trouble.rethrow();
}

void Tree::Private::removeBelowRoot(IObserver *originator)
{
    // By their paths: observers may remove some of them themselves, or add others, which stay.
    std::vector<std::pair<QString, bool>> tops;
    for (const TreeItem *child : root->GetTreeItems())
        tops.emplace_back(child->path, child->isNode());
    FirstException trouble;
    for (const auto &[path, isNode] : tops) {
        if (TreeItem *const item = (isNode ? nodes : values).find(path))
            trouble.attempt([&] { remove(*item, originator); });
    }
    trouble.rethrow();
}

Tree::Tree() : d(std::make_unique<Private>(this))
{
}

Tree::~Tree()
{
    FirstException trouble; // of an observer; nobody is left to hear of it
    trouble.attempt([this] { d->removeBelowRoot(nullptr); });
}

Tree &Tree::Instance()
{
    // Never destroyed, since holders in static objects of other libraries may be the last to go.
    static Tree &tree = *new Tree;
    return tree;
}

bool Tree::canHold(const QString &path)
{
    // Nearly all paths are short enough for any number of parts.
    return path.size() < 2 * maxDepth || (path.size() <= maxPathLength && fits(normalizedPath(path)));
}

bool Tree::addValue(const QString &parentPath, std::unique_ptr<ValueBase> value, IObserver *originator)
{
    const QString path = joined(parentPath, value ? value->path : QString());
    return addValueAt(path, std::move(value), originator);
}

bool Tree::addValueAt(const QString &givenPath, std::unique_ptr<ValueBase> value, IObserver *originator)
{
    Q_ASSERT(isMainThread());
    if (!value || !hasName(givenPath)) {
        refuse(givenPath, "a value needs a name");
        return false;
    }
    value->path = normalizedPath(givenPath);
    const bool hasRoom = fits(value->path);
    if (!hasRoom || !d->values.insert(*value)) {
        refuse(value->path, hasRoom ? "there is such a value" : "too deep or too long");
        return false;
    }
    Private::Addition addition;
    Node *const parent = d->ensureNode(values::parentPath(value->path), addition);
    d->hook(*parent, std::move(value), addition);
    d->tell(addition, originator);
    return true;
}

Node *Tree::addNode(const QString &path, IObserver *originator)
{
    if (Node *const node = findNode(path))
        return node;
    const QString normalized = normalizedPath(path);
    if (!fits(normalized)) {
        refuse(path, "too deep or too long");
        return nullptr;
    }
    Private::Addition addition;
    d->ensureNode(normalized, addition);
    d->tell(addition, originator);
    return findNode(normalized); // an observer may have removed it
}

bool Tree::removeValue(const QString &path, IObserver *originator)
{
    ValueBase *const value = findValue(path);
    if (value)
        d->remove(*value, originator);
    return value;
}

bool Tree::removeNode(const QString &path, IObserver *originator)
{
    Node *const node = findNode(path);
    if (node == d->root.get())
        d->removeBelowRoot(originator);
    else if (node)
        d->remove(*node, originator);
    return node;
}

void Tree::release(const QString &path)
{
    if (d->listeners.isEmpty())
        return;
    if (ValueBase *const value = findValue(path))
        d->listeners.valueReleased(*value);
}

void Tree::addListener(const QString &path, ITreeListener *listener)
{
    d->listeners.add(normalizedPath(path), listener);
}

void Tree::removeListener(const ITreeListener *listener)
{
    d->listeners.remove(listener);
}

ValueBase *Tree::findValue(const QString &path) const
{
    return static_cast<ValueBase *>(lookUp(d->values, path));
}

Node *Tree::findNode(const QString &path) const
{
    return static_cast<Node *>(lookUp(d->nodes, path));
}

std::vector<TreeItem *> Tree::subtree(const QString &path) const
{
    std::vector<TreeItem *> items;
    std::vector<TreeItem *> pending;
    if (Node *const top = findNode(path))
        pending.push_back(top);
    while (!pending.empty()) {
        TreeItem *const item = pending.back();
        pending.pop_back();
        items.push_back(item);
        if (!item->isNode())
            continue;
        const auto &children = static_cast<Node *>(item)->children;
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            if (*child)
                pending.push_back(child->get());
    }
    return items;
}

TreeListeners &Tree::listeners() const
{
    return d->listeners;
}
} // namespace values
