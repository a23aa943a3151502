#pragma once

#include "valuetreelib/itreelistener.h"

#include <vector>

namespace values
{
/// The listeners of one tree, each with its path. They may be added and removed while they are being told.
class TreeListeners
{
public:
    void add(const QString &normalizedPath, ITreeListener *listener);
    void remove(const ITreeListener *listener);

    void itemAdded(TreeItem &item, IObserver *originator);
    void itemRemoved(TreeItem &item, IObserver *originator);
    void valueChanged(const ValueChange &change);
    void commandRecorded(ValueBase &value, const ValueBase::CommandOnValue &command);
    void valueReleased(ValueBase &value);

    bool isEmpty() const { return entries.empty(); }
    /// Whether there is one for @p value.
    bool hear(const ValueBase &value) const;

private:
    struct Entry {
        QString path;
        ITreeListener *listener; // null: removed while listeners were being told
    };

    static bool concerns(const Entry &entry, const TreeItem &item);
    template <typename Tell> void tell(const TreeItem &item, const Tell &tell);

    std::vector<Entry> entries;
    int depth = 0;
};
} // namespace values
