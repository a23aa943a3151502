#include "orbconnection/mirroredvalues.h"

#include "valuetreelib/valuebase.h"

namespace mirror
{
namespace
{
QString prefixOf(const QString &path)
{
    return path.endsWith(u'/') ? path : path + u'/';
}
} // namespace

void MirroredValues::bind(quint32 id, values::ValueBase *value)
{
    const quint32 known = this->id(value);
    if (known == 0)
        notInPlace.push_back(value);
    else if (known != id)
        earlierIds.insert(value, known);
    idsByValue.insert(value, id);
    valuesById.insert(id, value);
}

void MirroredValues::removeValue(const QString &path)
{
    const auto place = sorted().find(path);
    if (place != places.end())
        remove(place);
}

void MirroredValues::removeBelow(const QString &path)
{
    const QString prefix = prefixOf(path);
    auto place = sorted().lower_bound(prefix);
    while (place != places.end() && place->first.startsWith(prefix))
        place = remove(place);
}

void MirroredValues::clear()
{
    places.clear();
    notInPlace.clear();
    valuesById.clear();
    idsByValue.clear();
    earlierIds.clear();
}

std::vector<QString> MirroredValues::paths() const
{
    std::vector<QString> all;
    all.reserve(sorted().size());
    for (const auto &[path, value] : places)
        all.push_back(path);
    return all;
}

std::vector<values::ValueBase *> MirroredValues::valuesBelow(const QString &path) const
{
    const QString prefix = prefixOf(path);
    std::vector<values::ValueBase *> found;
    for (auto it = sorted().lower_bound(prefix); it != places.end() && it->first.startsWith(prefix); ++it)
        found.push_back(it->second);
    return found;
}

MirroredValues::Places &MirroredValues::sorted() const
{
    for (values::ValueBase *const value : notInPlace)
        places[value->GetPathName()] = value;
    notInPlace.clear();
    return places;
}

MirroredValues::Places::iterator MirroredValues::remove(Places::iterator place)
{
    const values::ValueBase *const value = place->second;
    const auto earlier = earlierIds.values(value);
    for (const quint32 id : earlier)
        valuesById.remove(id);
    earlierIds.remove(value);
    valuesById.remove(id(value));
    idsByValue.remove(value);
    return places.erase(place);
}
} // namespace mirror
