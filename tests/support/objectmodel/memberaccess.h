#pragma once

#include "objectbase/converters.h"
#include "objectbase/irgobject.h"
#include "tests/support/objectmodel/samples.h"

#include <functional>

namespace modeltest
{

/// One member of a class, reached through its accessors. The functions take objects of that class only.
struct MemberAccess {
    QString name;
    bool alternative;
    Kind kind;
    bool list;
    std::function<bool(const REPORTGENERATOR::IRGObject &)> isSet;
    std::function<void(REPORTGENERATOR::IRGObject &)> reset;
    std::function<void(REPORTGENERATOR::IRGObject &, int seed)> fill;
    /// What the const getter yields, as textOf words it.
    std::function<QString(const REPORTGENERATOR::IRGObject &)> value;
    std::function<QString(const REPORTGENERATOR::IRGObject &)> defaultValue; ///< of scalars
    std::function<void(REPORTGENERATOR::IRGObject &)> setInvalid;            ///< of texts and enumerations
    std::function<bool(const REPORTGENERATOR::IRGObject &)> acceptsInvalid;  ///< IsValid of the same value
    std::function<void(REPORTGENERATOR::IRGObject &)> appendEmpty;           ///< of lists: an item without content
    std::function<void(REPORTGENERATOR::IRGObject &)> look;                  ///< non-const getter of lists and objects
};

template <class T> constexpr bool isObject = std::is_base_of_v<REPORTGENERATOR::IRGObject, T>;

template <class T> constexpr Kind kindOf()
{
    if constexpr (isVector<T>)
        return kindOf<typename T::value_type>();
    else if constexpr (isObject<T>)
        return Kind::Object;
    else if constexpr (std::is_enum_v<T>)
        return Kind::Enumeration;
    else if constexpr (std::is_same_v<T, QString>)
        return Kind::Text;
    else if constexpr (std::is_same_v<T, bool>)
        return Kind::Bool;
    else if constexpr (std::is_same_v<T, double>)
        return Kind::Double;
    else if constexpr (std::is_same_v<T, QDateTime>)
        return Kind::DateTime;
    else if constexpr (sizeof(T) == 8)
        return std::is_signed_v<T> ? Kind::Int64 : Kind::UInt64;
    else
        return std::is_signed_v<T> ? Kind::Int32 : Kind::UInt32;
}

/// A value for comparison: null and empty texts differ, a list is its size, an object says whether it has content.
template <class T> QString textOf(const T &value)
{
    if constexpr (isVector<T>)
        return QStringLiteral("%1 items").arg(value.size());
    else if constexpr (isObject<T>)
        return value.AnyData() ? "content" : "no content";
    else if constexpr (std::is_enum_v<T>)
        return QString::number(static_cast<int>(value));
    else if constexpr (std::is_same_v<T, QString>)
        return value.isNull() ? "null" : '"' + value + '"';
    else if constexpr (std::is_same_v<T, bool>)
        return value ? "true" : "false";
    else if constexpr (std::is_same_v<T, QDateTime>)
        return value.isNull() ? "null" : REPORTGENERATOR::Converters::ToString(value);
    else
        return QString::number(value);
}

/// The value that no text and no enumeration accepts; for objects and numbers the default.
template <class T> T invalidValue()
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<T>(-1);
    else
        return T();
}

/// The accessors of one member as functions that take the object first.
template <class IsSet, class Reset, class Get, class Look, class Set, class Default, class IsValid, class Append>
struct Accessors {
    IsSet isSet;
    Reset reset;
    Get get;
    Look look;
    Set set;
    Default defaultOf;
    IsValid isValid;
    Append append;
};
// clang 14, which builds the fuzzers, does not deduce an aggregate by itself.
template <class... Functions> Accessors(Functions...) -> Accessors<Functions...>;

template <class T, class A> MemberAccess memberAccess(const QString &name, bool alternative, A access)
{
    using Object = REPORTGENERATOR::IRGObject;
    using Value = std::decay_t<decltype(access.get(std::declval<const T &>()))>;
    const auto of = [](auto &object) -> auto &
    {
        return static_cast<
            std::conditional_t<std::is_const_v<std::remove_reference_t<decltype(object)>>, const T, T> &>(object);
    };
    const Place place{T::GetStaticObjectName(), name, 0};
    MemberAccess member{name, alternative, kindOf<Value>(), isVector<Value>, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    member.isSet = [=](const Object &object) { return access.isSet(of(object)); };
    member.reset = [=](Object &object) { access.reset(of(object)); };
    member.fill = [=](Object &object, int seed) {
        access.set(of(object), sample<Value>({place.className, place.member, seed}));
    };
    member.value = [=](const Object &object) { return textOf<Value>(access.get(of(object))); };
    if constexpr (isVector<Value> || isObject<Value>)
        member.look = [=](Object &object) { access.look(of(object)); };
    else
        member.defaultValue = [=](const Object &object) { return textOf<Value>(access.defaultOf(of(object))); };
    if constexpr (std::is_same_v<Value, QString> || std::is_enum_v<Value>) {
        member.setInvalid = [=](Object &object) { access.set(of(object), invalidValue<Value>()); };
        member.acceptsInvalid = [=](const Object &object) { return access.isValid(of(object), invalidValue<Value>()); };
    }
    if constexpr (isVector<Value>)
        member.appendEmpty = [=](Object &object) {
            access.append(of(object), invalidValue<typename Value::value_type>());
        };
    return member;
}

} // namespace modeltest

/// Access to @p Name of @p Class; the accessors that a kind does not have are never instantiated.
#define KORVE_MEMBER_ACCESS(Class, Name, alternative)                                                                  \
    modeltest::memberAccess<Class>(                                                                                    \
        #Name, alternative,                                                                                            \
        modeltest::Accessors{[](const auto &object) { return object.Is##Name##Set(); },                                \
                             [](auto &object) { object.Reset##Name(); },                                               \
                             [](const auto &object) -> decltype(auto) { return object.Get##Name(); },                  \
                             [](auto &object) -> decltype(auto) { return object.Get##Name(); },                        \
                             [](auto &object, const auto &value) { object.Set##Name(value); },                         \
                             [](const auto &object) { return object.GetDefault##Name(); },                             \
                             [](const auto &object, const auto &value) { return object.IsValid##Name(value); },        \
                             [](auto &object, const auto &item) { object.Append##Name(item); }})

#define KORVE_MEMBER(Class, Name) KORVE_MEMBER_ACCESS(Class, Name, false)
#define KORVE_ALTERNATIVE(Class, Name) KORVE_MEMBER_ACCESS(Class, Name, true)
