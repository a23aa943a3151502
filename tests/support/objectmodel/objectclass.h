#pragma once

#include "tests/support/objectmodel/memberaccess.h"
#include "tests/support/virtualslot.h"

#include <QDataStream>

#include <memory>
#include <vector>

namespace modeltest
{

/// One of the 52 classes, for tests that run over all of them. The functions take objects of that class only.
struct ObjectClass {
    QString name;
    qint64 id;
    std::function<std::unique_ptr<REPORTGENERATOR::IRGObject>()> make;
    std::function<std::unique_ptr<REPORTGENERATOR::IRGObject>(const REPORTGENERATOR::IRGObject &)> copy;
    std::function<void(REPORTGENERATOR::IRGObject &, const REPORTGENERATOR::IRGObject &)> assign;
    std::function<bool(const REPORTGENERATOR::IRGObject &, const REPORTGENERATOR::IRGObject &)> equal;
    std::function<bool(const REPORTGENERATOR::IRGObject &, const REPORTGENERATOR::IRGObject &)> unequal;
    std::function<bool(const REPORTGENERATOR::IRGObject &)> isInitialized;
    std::function<bool(const REPORTGENERATOR::IRGObject &)> anyData;
    std::function<void(REPORTGENERATOR::IRGObject &)> resetToDefault;
    std::function<void(const REPORTGENERATOR::IRGObject &, QDataStream &)> writeCompact;
    std::function<void(REPORTGENERATOR::IRGObject &, QDataStream &)> readCompact;
    std::ptrdiff_t slotBehind; ///< the place that a virtual operation added to the class would take
    std::vector<MemberAccess> members; ///< in the order of the XML and tagged forms

    std::unique_ptr<REPORTGENERATOR::IRGObject> filled() const;
};

/// Describes @p T by its own functions.
template <class T> ObjectClass describe(std::vector<MemberAccess> members)
{
    using Object = REPORTGENERATOR::IRGObject;
    static_assert(std::is_base_of_v<Object, T> && sizeof(T) == sizeof(Object) + sizeof(void *),
                  "one base and one pointer, nothing else");
    return {
        T::GetStaticObjectName(),
        T::GetId(),
        [] { return std::make_unique<T>(); },
        [](const Object &from) { return std::make_unique<T>(static_cast<const T &>(from)); },
        [](Object &to, const Object &from) { static_cast<T &>(to) = static_cast<const T &>(from); },
        [](const Object &a, const Object &b) { return static_cast<const T &>(a) == static_cast<const T &>(b); },
        [](const Object &a, const Object &b) { return static_cast<const T &>(a) != static_cast<const T &>(b); },
        [](const Object &object) { return static_cast<const T &>(object).IsInitialized(); },
        [](const Object &object) { return static_cast<const T &>(object).AnyData(); },
        [](Object &object) { static_cast<T &>(object).ResetToDefault(); },
        [](const Object &object, QDataStream &out) {
            static_cast<const T &>(object).GetVersionSpecificBinaryWithoutValidation(out);
        },
        [](Object &object, QDataStream &in) { static_cast<T &>(object).SetVersionSpecificBinaryWithoutValidation(in); },
        slotBehind<T>(),
        std::move(members)};
}

/// All 52, in the order of the table of members.
const std::vector<ObjectClass> &objectClasses();
/// Ends the program with a message if there is none of that name.
const ObjectClass &objectClass(const QString &name);

std::vector<ObjectClass> recordClasses();
std::vector<ObjectClass> channelClasses();
std::vector<ObjectClass> configurationClasses();
std::vector<ObjectClass> resourceClasses();
std::vector<ObjectClass> deviceClasses();
std::vector<ObjectClass> filterClasses();

} // namespace modeltest
