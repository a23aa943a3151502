#include "orbconnection/mirroredvalues.h"

#include "valuetreelib/valuebase.h"

namespace mirror
{
void MirroredValues::bind(quint32 id, values::ValueBase *value)
{
    Entry &entry = entries[value->GetPathName()];
    entry.value = value;
    if (entry.ids.empty() || entry.ids.back() != id)
        entry.ids.push_back(id);
    valuesById[id] = value;
    idsByValue[value] = id;
}

void MirroredValues::removeValue(const QString &path)
{
    const auto position = entries.find(path);
    if (position != entries.end())
        remove(position);
}

void MirroredValues::removeBelow(const QString &path)
{
    const QString prefix = path.endsWith(u'/') ? path : path + u'/';
    auto position = entries.lower_bound(prefix);
    while (position != entries.end() && position->first.startsWith(prefix))
        position = remove(position);
}

void MirroredValues::clear()
{
    entries.clear();
    valuesById.clear();
    idsByValue.clear();
}

quint32 MirroredValues::id(const values::ValueBase *value) const
{
    return idsByValue.value(value, 0);
}

std::vector<QString> MirroredValues::paths() const
{
    std::vector<QString> all;
    all.reserve(entries.size());
    for (const auto &[path, entry] : entries)
        all.push_back(path);
    return all;
}

std::vector<values::ValueBase *> MirroredValues::valuesBelow(const QString &path) const
{
    const QString prefix = path.endsWith(u'/') ? path : path + u'/';
    std::vector<values::ValueBase *> found;
    for (auto it = entries.lower_bound(prefix); it != entries.end() && it->first.startsWith(prefix); ++it)
        found.push_back(it->second.value);
    return found;
}

MirroredValues::Entries::iterator MirroredValues::remove(Entries::iterator position)
{
    for (const quint32 id : position->second.ids)
        valuesById.remove(id);
    idsByValue.remove(position->second.value);
    return entries.erase(position);
}
} // namespace mirror
