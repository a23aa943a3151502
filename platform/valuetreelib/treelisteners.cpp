#include "valuetreelib/treelisteners.h"

#include "valuetreelib/treepath.h"

#include <algorithm>

namespace values
{
void TreeListeners::add(const QString &normalizedPath, ITreeListener *listener)
{
    entries.push_back({normalizedPath, listener});
}

void TreeListeners::remove(const ITreeListener *listener)
{
    if (!depth) {
        std::erase_if(entries, [listener](const Entry &entry) { return entry.listener == listener; });
        return;
    }
    for (Entry &entry : entries) {
        if (entry.listener == listener)
            entry.listener = nullptr;
    }
}

bool TreeListeners::concerns(const Entry &entry, const TreeItem &item)
{
    // A value of the listener's own path stands beside the node and is not the listener's.
    return entry.listener && (isPathBelow(item.path, entry.path) || (item.isNode() && item.path == entry.path));
}

template <typename Tell> void TreeListeners::tell(const TreeItem &item, const Tell &tell)
{
    if (entries.empty())
        return;
    ++depth;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (concerns(entries[i], item))
            tell(*entries[i].listener);
    }
    if (!--depth)
        std::erase_if(entries, [](const Entry &entry) { return !entry.listener; });
}

void TreeListeners::itemAdded(TreeItem &item, IObserver *originator)
{
    tell(item, [&](ITreeListener &listener) { listener.itemAdded(item, originator); });
}

void TreeListeners::itemRemoved(TreeItem &item, IObserver *originator)
{
    tell(item, [&](ITreeListener &listener) { listener.itemRemoved(item, originator); });
}

void TreeListeners::valueChanged(const ValueChange &change)
{
    tell(change.value, [&](ITreeListener &listener) { listener.valueChanged(change); });
}

void TreeListeners::commandRecorded(ValueBase &value, const ValueBase::CommandOnValue &command)
{
    tell(value, [&](ITreeListener &listener) { listener.commandRecorded(value, command); });
}

void TreeListeners::valueReleased(ValueBase &value)
{
    tell(value, [&](ITreeListener &listener) { listener.valueReleased(value); });
}

bool TreeListeners::hear(const ValueBase &value) const
{
    return std::any_of(entries.begin(), entries.end(),
                       [&value](const Entry &entry) { return concerns(entry, value); });
}
} // namespace values
