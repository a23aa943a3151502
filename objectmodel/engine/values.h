#pragma once

#include "objectmodel/engine/access.h"

#include <QDateTime>

#include <cstring>

/// Single values by their kind: a member's field or a list's item.
namespace KORVE_XML::engine
{

template <class T> const T &valueAt(const void *field)
{
    return *static_cast<const T *>(field);
}

template <class T> T &valueAt(void *field)
{
    return *static_cast<T *>(field);
}

/// Enumerations are one signed byte each; their types are unknown here.
inline int enumerationAt(const void *field)
{
    signed char value;
    std::memcpy(&value, field, 1);
    return value;
}

inline void setEnumerationAt(void *field, int value)
{
    const auto byte = static_cast<signed char>(value);
    std::memcpy(field, &byte, 1);
}

/// The value of any integer member, widened as the wire forms carry it. Inline, since writers know the kind already.
inline qint64 integerAt(const MemberInfo &member, const void *field)
{
    switch (member.kind) {
    case Kind::Int32: return valueAt<qint32>(field);
    case Kind::UInt32: return valueAt<quint32>(field);
    case Kind::Int64: return valueAt<qint64>(field);
    case Kind::UInt64: return qint64(valueAt<quint64>(field));
    case Kind::Text:
    case Kind::Boolean:
    case Kind::Double:
    case Kind::DateTime:
    case Kind::Enumeration:
    case Kind::Object: break;
    }
    Q_ASSERT(false);
    return 0;
}

void resetValue(const MemberInfo &member, void *field);
/// Compares two fields, lists as a whole.
bool equalValue(const MemberInfo &member, const void *a, const void *b);
/// Whether an item may be appended: texts are not null, enumerations in their list, objects have data.
bool isComplete(const MemberInfo &member, const void *item);

inline bool isValid(const MemberInfo &, const QString &value)
{
    return !value.isNull();
}

template <class Integer> requires std::is_integral_v<Integer> bool isValid(const MemberInfo &member, Integer value)
{
    return member.limit == Limit::None || (qint64(value) >= member.lowest && qint64(value) <= member.highest);
}

template <class E> requires std::is_enum_v<E> bool isValid(const MemberInfo &member, E value)
{
    return member.enumeration->contains(value);
}

inline bool isValid(const MemberInfo &, double)
{
    return true;
}

inline bool isValid(const MemberInfo &, const QDateTime &)
{
    return true;
}

inline bool isValid(const MemberInfo &, const IRGObject &)
{
    return true;
}

template <class T> bool isValid(const MemberInfo &member, const QVector<T> &values)
{
    for (const T &value : values) {
        if (!isValid(member, value))
            return false;
    }
    return true;
}

/// The same by kind, for a single value whose type is unknown.
bool isValidValue(const MemberInfo &member, const void *field);

} // namespace KORVE_XML::engine
