#include "objectmodel/engine/values.h"

namespace KORVE_XML::engine
{

namespace
{

template <class T> bool equalAs(const void *a, const void *b)
{
    return valueAt<T>(a) == valueAt<T>(b);
}

} // namespace

void resetValue(const MemberInfo &member, void *field)
{
    switch (member.kind) {
    case Kind::Text: valueAt<QString>(field) = QString(); break;
    case Kind::Boolean: valueAt<bool>(field) = member.defaultValue; break;
    case Kind::Int32: valueAt<qint32>(field) = qint32(member.defaultValue); break;
    case Kind::UInt32: valueAt<quint32>(field) = quint32(member.defaultValue); break;
    case Kind::Int64: valueAt<qint64>(field) = member.defaultValue; break;
    case Kind::UInt64: valueAt<quint64>(field) = quint64(member.defaultValue); break;
    case Kind::Double: valueAt<double>(field) = double(member.defaultValue); break;
    case Kind::DateTime: valueAt<QDateTime>(field) = QDateTime(); break;
    case Kind::Enumeration: setEnumerationAt(field, int(member.defaultValue)); break;
    case Kind::Object: member.object->reset(field); break;
    }
}

bool equalValue(const MemberInfo &member, const void *a, const void *b)
{
    if (member.list)
        return member.list->equal(a, b);
    switch (member.kind) {
    case Kind::Text: return equalAs<QString>(a, b);
    case Kind::Boolean: return equalAs<bool>(a, b);
    case Kind::Int32: return equalAs<qint32>(a, b);
    case Kind::UInt32: return equalAs<quint32>(a, b);
    case Kind::Int64: return equalAs<qint64>(a, b);
    case Kind::UInt64: return equalAs<quint64>(a, b);
    case Kind::Double: return equalAs<double>(a, b);
    case Kind::DateTime: return equalAs<QDateTime>(a, b);
    case Kind::Enumeration: return enumerationAt(a) == enumerationAt(b);
    case Kind::Object: return member.object->equal(a, b);
    }
    return false;
}

bool isComplete(const MemberInfo &member, const void *item)
{
    return member.holdsObjects() ? member.objectAt(item).HasData() : isValidValue(member, item);
}

bool isValidValue(const MemberInfo &member, const void *field)
{
    switch (member.kind) {
    case Kind::Text: return isValid(member, valueAt<QString>(field));
    case Kind::Enumeration: return member.enumeration->contains(enumerationAt(field));
    case Kind::Int32: return isValid(member, valueAt<qint32>(field));
    case Kind::UInt32: return isValid(member, valueAt<quint32>(field));
    case Kind::Int64: return isValid(member, valueAt<qint64>(field));
    case Kind::UInt64: return isValid(member, valueAt<quint64>(field));
    case Kind::Boolean:
    case Kind::Double:
    case Kind::DateTime:
    case Kind::Object: break;
    }
    return true;
}

} // namespace KORVE_XML::engine
