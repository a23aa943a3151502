#include "korvebase/recordidentifierlist.h"

#include "korvebase/identifierindex.h"

#include <QPair>
#include <QSet>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

namespace korve
{

namespace
{

IdentifierIndex indexOfAll(const RecordIdentifierList &identifiers)
{
    IdentifierIndex index(identifiers.size());
    for (const RecordIdentifier &identifier : identifiers)
        index.insert(identifier);
    return index;
}

/// The different results of @p part over the identifiers that are @p wanted.
template <class Wanted, class Part>
auto distinct(const RecordIdentifierList &identifiers, const Wanted &wanted, const Part &part)
{
    QSet<decltype(part(identifiers.first()))> parts;
    for (const RecordIdentifier &identifier : identifiers) {
        if (wanted(identifier))
            parts.insert(part(identifier));
    }
    return parts;
}

const auto any = [](const RecordIdentifier &) { return true; };

QSet<QString> subSystemsOf(const RecordIdentifierList &identifiers)
{
    return distinct(identifiers, any, [](const RecordIdentifier &each) { return each.subSystem(); });
}

QSet<QString> devicesOf(const RecordIdentifierList &identifiers, const QString &subSystem)
{
    return distinct(
        identifiers, [&](const RecordIdentifier &each) { return each.subSystem() == subSystem; },
        [](const RecordIdentifier &each) { return each.deviceID(); });
}

RecordIdentifierList::Predicate isRecord(const QString &recordID)
{
    return [recordID](const RecordIdentifier &each) { return each.recordID() == recordID; };
}

bool isInvalid(const RecordIdentifier &identifier)
{
    return !identifier.valid();
}

} // namespace

bool RecordIdentifierList::add(const RecordIdentifier &identifier)
{
    if (contains(identifier))
        return false;
    append(identifier);
    return true;
}

bool RecordIdentifierList::add(const QString &subSystem, const QString &deviceID, const QString &recordID)
{
    return add(RecordIdentifier(subSystem, deviceID, recordID));
}

bool RecordIdentifierList::add(const QString &deviceID, const QString &recordID)
{
    return add(RecordIdentifier(deviceID, recordID));
}

bool RecordIdentifierList::add(const RecordIdentifierList &identifiers)
{
    const IdentifierIndex candidates = indexOfAll(identifiers);
    std::vector<bool> isKnown(static_cast<std::size_t>(candidates.size()));
    for (const RecordIdentifier &identifier : std::as_const(*this)) {
        if (const int number = candidates.find(identifier); number >= 0)
            isKnown[static_cast<std::size_t>(number)] = true;
    }
    // What is borrowed stays as it is: a list that is added to itself knows all of itself.
    const int before = size();
    for (int number = 0; number < candidates.size(); ++number) {
        if (!isKnown[static_cast<std::size_t>(number)])
            append(candidates[number]);
    }
    return size() - before == identifiers.size();
}

RecordIdentifierList &RecordIdentifierList::operator<<(const RecordIdentifier &identifier)
{
    add(identifier);
    return *this;
}

RecordIdentifierList &RecordIdentifierList::operator<<(const RecordIdentifierList &identifiers)
{
    add(identifiers);
    return *this;
}

void RecordIdentifierList::sort()
{
    if (!isEmpty())
        std::stable_sort(begin(), end()); // stays within bounds although the order is none
}

int RecordIdentifierList::removeDuplicates()
{
    IdentifierIndex seen(size());
    return keepOnly([&](const RecordIdentifier &each) { return seen.insert(each); });
}

int RecordIdentifierList::removeInvalidIDs()
{
    return keepOnly(&RecordIdentifier::valid);
}

int RecordIdentifierList::removeAll(const RecordIdentifierList &identifiers)
{
    const IdentifierIndex unwanted = indexOfAll(identifiers);
    return keepOnly([&](const RecordIdentifier &each) { return unwanted.find(each) < 0; });
}

int RecordIdentifierList::removeAll(const QString &recordID)
{
    return keepOnly(std::not_fn(isRecord(recordID)));
}

/// The list does not change before the last identifier has been looked at.
int RecordIdentifierList::keepOnly(const Predicate &predicate)
{
    RecordIdentifierList kept = filter(predicate);
    const int removed = size() - kept.size();
    if (removed > 0)
        swap(kept);
    return removed;
}

bool RecordIdentifierList::hasDuplicates() const
{
    IdentifierIndex seen(size());
    return !std::all_of(begin(), end(), [&](const RecordIdentifier &each) { return seen.insert(each); });
}

bool RecordIdentifierList::hasInvalidIDs() const
{
    return std::any_of(begin(), end(), isInvalid);
}

bool RecordIdentifierList::contains(const QString &recordID) const
{
    return contains(isRecord(recordID));
}

bool RecordIdentifierList::contains(const Predicate &predicate) const
{
    return std::any_of(begin(), end(), predicate);
}

int RecordIdentifierList::count(const QString &recordID) const
{
    return static_cast<int>(std::count_if(begin(), end(), isRecord(recordID)));
}

QStringList RecordIdentifierList::subSystems() const
{
    return subSystemsOf(*this).values();
}

int RecordIdentifierList::countSubSystems() const
{
    return subSystemsOf(*this).size();
}

QStringList RecordIdentifierList::deviceIDs(const QString &subSystem) const
{
    return devicesOf(*this, subSystem).values();
}

int RecordIdentifierList::countDeviceIDs(const QString &subSystem) const
{
    return devicesOf(*this, subSystem).size();
}

int RecordIdentifierList::countDevices() const
{
    const auto device = [](const RecordIdentifier &each) { return qMakePair(each.subSystem(), each.deviceID()); };
    return distinct(*this, any, device).size();
}

QStringList RecordIdentifierList::recordIDs(const QString &subSystem, const QString &deviceID) const
{
    const auto isOfDevice = [&](const RecordIdentifier &each) {
        return each.subSystem() == subSystem && each.deviceID() == deviceID;
    };
    return distinct(*this, isOfDevice, [](const RecordIdentifier &each) { return each.recordID(); }).values();
}

RecordIdentifierList RecordIdentifierList::filter(const QString &subSystem) const
{
    return filter([&](const RecordIdentifier &each) { return each.subSystem() == subSystem; });
}

RecordIdentifierList RecordIdentifierList::filter(const QString &subSystem, const QString &deviceID) const
{
    return filter(
        [&](const RecordIdentifier &each) { return each.subSystem() == subSystem && each.deviceID() == deviceID; });
}

RecordIdentifierList RecordIdentifierList::filter(const Predicate &predicate) const
{
    RecordIdentifierList wanted;
    std::copy_if(begin(), end(), std::back_inserter(wanted), predicate);
    return wanted;
}

RecordIdentifierList RecordIdentifierList::find(const QString &recordID) const
{
    return filter(isRecord(recordID));
}

QString RecordIdentifierList::toString(bool complete) const
{
    constexpr int tooMany = 3;
    if (!complete && size() >= tooMany) // contract: no blank behind the colon
        return QStringLiteral("%1 records:").arg(size()) + first().toString() + QStringLiteral(" ... ") +
               last().toString();
    QStringList texts;
    for (const RecordIdentifier &identifier : *this)
        texts.append(identifier.toString());
    return texts.join(u';');
}

} // namespace korve
