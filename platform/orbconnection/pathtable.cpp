#include "orbconnection/pathtable.h"

namespace mirror
{
namespace
{
struct PartCode {
    Parts part;
    TChangeCode code;
};
// A receiver needs the items before the key, and may believe the content only with the state.
constexpr PartCode partCodes[] = {{itemsPart, values::ChangeCodeSelectionItems},
                                  {limitsPart, values::ChangeCodeLimits},
                                  {contentPart, ChangeCodeValue},
                                  {statePart, ChangeCodeState}};
} // namespace

Parts partsOf(const values::ValueChange &change)
{
    for (const PartCode &known : partCodes)
        if (known.code == change.code)
            return change.forced ? known.part | known.part << forcedShift : known.part;
    return 0;
}

void appendParts(const values::ValueBase &value, Parts parts, std::string &out)
{
    for (const auto &[part, code] : partCodes)
        if (parts & part)
            value.AddCommandForTransmission(code, parts & (part << forcedShift), out);
}

PathTable::Place PathTable::placeOf(const QString &path)
{
    const Place place = find(path);
    return place ? place : add(path);
}

void PathTable::reserve(std::size_t count)
{
    entries.reserve(count + 1);
    valuesNotEntered.reserve(count);
}

PathTable::Place PathTable::add(const QString &path)
{
    entries.emplace_back().path = path;
    return last();
}

PathTable::Place PathTable::find(const QString &path)
{
    while (pathsEntered < last()) {
        ++pathsEntered;
        placesByPath.insert(entries[pathsEntered].path, pathsEntered);
    }
    return placesByPath.value(path);
}

PathTable::Place PathTable::find(const values::ValueBase *value)
{
    if (!valuesNotEntered.empty())
        enterValues();
    return placesByValue.value(value);
}

void PathTable::enterValues()
{
    placesByValue.reserve(placesByValue.size() + valuesNotEntered.size());
    for (const Place place : valuesNotEntered) {
        const values::ValueBase *const value = entries[place].value;
        const Place before = placesByValue.value(value);
        if (before != 0 && before != place) // one path by two numbers: the peer is rude
            entries[before].value = nullptr;
        placesByValue.insert(value, place);
    }
    valuesNotEntered.clear();
}

void PathTable::bind(Place place, values::ValueBase *value)
{
    unbind(place);
    entries[place].value = value;
    valuesNotEntered.push_back(place);
}

void PathTable::unbind(Place place)
{
    if (!entries[place].value)
        return;
    if (!valuesNotEntered.empty())
        enterValues();
    placesByValue.remove(std::exchange(entries[place].value, nullptr));
}

void PathTable::makeDirty(Place place, Parts parts)
{
    Entry &entry = entries[place];
    const bool stays = entry.dirty && (entry.isListed || entries[0].previous == place);
    if (entry.dirty && !stays)
        unlink(entry);
    entry.dirty |= parts;
    if (stays)
        return;
    entry.previous = entries[0].previous;
    entry.next = 0;
    entries[entry.previous].next = place;
    entries[0].previous = place;
}

Parts PathTable::takeDirty(Place place)
{
    Entry &entry = entries[place];
    if (entry.dirty)
        unlink(entry);
    entry.isListed = false;
    return std::exchange(entry.dirty, 0);
}

void PathTable::clearDirty()
{
    while (const Place place = firstDirty())
        takeDirty(place);
}

void PathTable::unlink(Entry &entry)
{
    entries[entry.previous].next = entry.next;
    entries[entry.next].previous = entry.previous;
}
} // namespace mirror
