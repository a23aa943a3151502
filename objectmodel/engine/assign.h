#pragma once

#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/values.h"

/// How a value enters an object: by a setter, by an append, by any reader that validates.
namespace KORVE_XML::engine
{

/// An object that values enter.
struct Target {
    const IRGObject &object;
    Record &record;
    const bool validate;

    Target(const IRGObject &object, Record &record)
        : object(object), record(record), validate(object.GetValidate())
    {
    }
};

/// Marks the member as set; an alternative becomes the selected one.
inline void markSet(Record &record, const MemberInfo &member)
{
    record.bits.set(member.bit);
    if (member.is(Alternative))
        record.choice = qint8(member.alternative);
}

/// Stores a value after testing it; with validation off a bad one is stored too.
template <class T> void assign(const Target &target, const MemberInfo &member, T value)
{
    if constexpr (!std::is_same_v<T, bool>) {
        if (target.validate && !isValid(member, value))
            throwRefusedBySetter(target.object.GetObjectName(), member);
    }
    valueAt<T>(member.field(target.record)) = std::move(value);
    markSet(target.record, member);
}

/// The same for an enumeration whose type is unknown here.
void assignEnumeration(const Target &target, const MemberInfo &member, int value);

/// Stores an object or a whole list, which no setter tests.
template <class T> void assignWhole(const Target &target, const MemberInfo &member, const T &value)
{
    if constexpr (std::is_base_of_v<IRGObject, T>) {
        if (member.is(Alternative) && !isValid(member, value) && target.validate)
            throwNotSelected(target.object.GetObjectName());
    }
    valueAt<T>(member.field(target.record)) = value;
    markSet(target.record, member);
}

/// Appends a copy of @p item; with validation on an incomplete one is refused.
template <class T> void append(const Target &target, const MemberInfo &member, const T &item)
{
    if (target.validate && !isComplete(member, &item))
        throwIncompleteItem(target.object.GetObjectName(), member);
    valueAt<QVector<T>>(member.field(target.record)).append(item);
    markSet(target.record, member);
}

/// An item that a reader fills in its place in the list. Unless kept, it is taken back.
class FreshItem
{
public:
    FreshItem(const Target &target, const MemberInfo &member);
    ~FreshItem();
    FreshItem(const FreshItem &) = delete;
    FreshItem &operator=(const FreshItem &) = delete;

    void *value() const { return item; }
    /// Throws when validation is on and the item is incomplete.
    void keep();

private:
    const Target &target;
    const MemberInfo &member;
    void *const list;
    void *const item;
    bool kept = false;
};

} // namespace KORVE_XML::engine
