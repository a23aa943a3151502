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
    *this = MirroredValues();
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

void MirroredValues::enter() const
{
    entered.valuesById.reserve(notEntered.size());
    entered.idsByValue.reserve(notEntered.size());
    for (const auto &[id, value] : notEntered) {
        const quint32 known = entered.idsByValue.value(value);
        if (known == 0)
            notInPlace.push_back(value);
        else if (known != id)
            entered.earlierIds.insert(value, known);
        entered.idsByValue.insert(value, id);
        entered.valuesById.insert(id, value);
    }
    notEntered.clear();
}

MirroredValues::Places &MirroredValues::sorted() const
{
    tables();
    for (values::ValueBase *const value : notInPlace)
        places[value->GetPathName()] = value;
    notInPlace.clear();
    return places;
}

MirroredValues::Places::iterator MirroredValues::remove(Places::iterator place)
{
    const values::ValueBase *const value = place->second;
    const auto earlier = entered.earlierIds.values(value);
    for (const quint32 id : earlier)
        entered.valuesById.remove(id);
    entered.earlierIds.remove(value);
    entered.valuesById.remove(id(value));
    entered.idsByValue.remove(value);
    return places.erase(place);
}
} // namespace mirror
