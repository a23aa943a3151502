#pragma once

#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/values.h"

/// How a value enters an object: by a setter, by an append, by any reader that validates.
namespace KORVE_XML::engine {

/// Marks the member as set; an alternative becomes the selected one.
inline void markSet(Record &record, const MemberInfo &member)
{
    record.bits.setBit(member.bit);
    if (member.is(Alternative))
        record.choice = qint8(member.alternative);
}

/// Stores a value after testing it; with validation off a bad one is stored too.
template <class T> void assign(const IRGObject &object, Record &record, const MemberInfo &member, const T &value)
{
    if constexpr (!std::is_same_v<T, bool>) {
        if (object.GetValidate() && !isValid(member, value))
            throwRefusedBySetter(object.GetObjectName(), member);
    }
    valueAt<T>(member.field(record)) = value;
    markSet(record, member);
}

/// The same for an enumeration whose type is unknown here.
void assignEnumeration(const IRGObject &object, Record &record, const MemberInfo &member, int value);

/// Stores an object or a whole list, which no setter tests.
template <class T> void assignWhole(const IRGObject &object, Record &record, const MemberInfo &member, const T &value)
{
    if constexpr (std::is_base_of_v<IRGObject, T>) {
        if (member.is(Alternative) && !isValid(member, value) && object.GetValidate())
            throwNotSelected(object.GetObjectName());
    }
    valueAt<T>(member.field(record)) = value;
    markSet(record, member);
}

/// Appends a copy of @p item; with validation on an incomplete one is refused.
template <class T> void append(const IRGObject &object, Record &record, const MemberInfo &member, const T &item)
{
    if (object.GetValidate() && !isComplete(member, &item))
        throwIncompleteItem(object.GetObjectName(), member);
    valueAt<QVector<T>>(member.field(record)).append(item);
    markSet(record, member);
}

/// An item that a reader fills in its place in the list. Unless kept, it is taken back.
class FreshItem
{
public:
    FreshItem(const IRGObject &object, Record &record, const MemberInfo &member);
    ~FreshItem();
    FreshItem(const FreshItem &) = delete;
    FreshItem &operator=(const FreshItem &) = delete;

    void *value() const { return item; }
    /// Throws when validation is on and the item is incomplete.
    void keep();

private:
    const IRGObject &object;
    Record &record;
    const MemberInfo &member;
    void *const list;
    void *const item;
    bool kept = false;
};

} // namespace KORVE_XML::engine
