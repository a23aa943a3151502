#pragma once

#include "korvebase/korvebase_export.h"

#include "korvebase/recordidentifier.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace korve
{

/// A list of record identifiers that can be kept free of duplicates, and grouped by subsystem and device.
///
/// What QList offers stays, and knows nothing of duplicates: append() and += take any. Lists of names come in no
/// particular order. Whatever compares two lists, or a list with itself, takes time linear in their sizes.
class KORVEBASE_EXPORT RecordIdentifierList : public QList<RecordIdentifier>
{
public:
    using Predicate = std::function<bool(const RecordIdentifier &)>;

    using QList::QList;
    RecordIdentifierList() = default;
    RecordIdentifierList(const QList<RecordIdentifier> &identifiers) : QList(identifiers) {}

    /// Appends what the list does not have yet; true when it was appended.
    bool add(const RecordIdentifier &identifier);
    bool add(const QString &subSystem, const QString &deviceID, const QString &recordID);
    bool add(const QString &deviceID, const QString &recordID);
    /// Appends those that the list does not have yet; true when it had none of them.
    bool add(const RecordIdentifierList &identifiers);
    /// contract: hides the one of QList, which would append duplicates.
    RecordIdentifierList &operator<<(const RecordIdentifier &identifier);
    RecordIdentifierList &operator<<(const RecordIdentifierList &identifiers);

    /// Ascending by RecordIdentifier::operator<, so only of use where the identifiers differ in one part.
    void sort();
    /// Keeps the first of equal ones and the order; answers how many it removed.
    int removeDuplicates();
    int removeInvalidIDs();
    using QList::removeAll;
    int removeAll(const RecordIdentifierList &identifiers);
    int removeAll(const QString &recordID);

    bool hasDuplicates() const;
    bool hasInvalidIDs() const;
    using QList::contains;
    bool contains(const QString &recordID) const;
    bool contains(const Predicate &predicate) const;
    using QList::count;
    int count(const QString &recordID) const;

    /// The empty subsystem counts as one.
    QStringList subSystems() const;
    int countSubSystems() const;
    QStringList deviceIDs(const QString &subSystem) const;
    int countDeviceIDs(const QString &subSystem) const;
    /// Devices of the same name in two subsystems are two.
    int countDevices() const;
    QStringList recordIDs(const QString &subSystem, const QString &deviceID) const;

    RecordIdentifierList filter(const QString &subSystem) const;
    RecordIdentifierList filter(const QString &subSystem, const QString &deviceID) const;
    RecordIdentifierList filter(const Predicate &predicate) const;
    /// The record of that name on each device that has one.
    RecordIdentifierList find(const QString &recordID) const;

    /// All, separated by ";". When @p complete is false and there are three or more: their number, first and last.
    QString toString(bool complete) const;

private:
    int keepOnly(const Predicate &predicate);
};

} // namespace korve
