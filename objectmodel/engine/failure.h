#pragma once

class QString;

/// The texts of every failure of the object model, each in one function that throws it.
namespace KORVE_XML::engine
{

struct MemberInfo;

/// A setter was given what its member refuses; @p member decides between the wordings.
[[noreturn]] void throwRefusedBySetter(const QString &object, const MemberInfo &member);
[[noreturn]] void throwNotSetProperly(const QString &object, const MemberInfo &member);
[[noreturn]] void throwIncompleteItem(const QString &object, const MemberInfo &member);
[[noreturn]] void throwWithoutData(const QString &object, const MemberInfo &member);
[[noreturn]] void throwEmptyBoolean(const QString &object, const QString &element);
[[noreturn]] void throwUnknownTag(const QString &object, const QString &element);
[[noreturn]] void throwLengthError(const QString &object);
[[noreturn]] void throwInvalidChoice(const QString &object);
[[noreturn]] void throwNothingChosen(const QString &object, const QString &choice);
[[noreturn]] void throwChosenNotSet(const QString &object, const MemberInfo &member);
[[noreturn]] void throwChosenWithoutData(const QString &object, const MemberInfo &member);
[[noreturn]] void throwNotSelected(const QString &object);

} // namespace KORVE_XML::engine
