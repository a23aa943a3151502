#include "objectmodel/engine/failure.h"

#include "objectmodel/engine/typeinfo.h"

#include "objectbase/exceptions.h"

using namespace REPORTGENERATOR;

namespace KORVE_XML::engine
{

namespace
{

/// The name of a member's field as the texts spell it: "m_" and the first letter lowered.
QString fieldName(const MemberInfo &member)
{
    return QLatin1String("m_") + member.name.at(0).toLower() + member.name.mid(1);
}

[[noreturn]] void throwOutsideLimit(const QString &object, const MemberInfo &member)
{
    if (member.limit == Limit::Minimum) {
        throw OutOfRangeException(QStringLiteral("Parameters for %1 must be larger or equal %2 in '%3'.")
                                      .arg(fieldName(member), QString::number(member.lowest), object));
    }
    throw OutOfRangeException(
        QStringLiteral("Parameters for %1 are not set within range (%2, %3) in '%4'.")
            .arg(fieldName(member), QString::number(member.lowest), QString::number(member.highest), object));
}

} // namespace

void throwRefusedBySetter(const QString &object, const MemberInfo &member)
{
    if (member.kind == Kind::Enumeration) {
        throw OutOfRangeException(
            QStringLiteral("enum is not valid (classname=%1,membername=%2)").arg(object, fieldName(member)));
    }
    if (member.limit != Limit::None)
        throwOutsideLimit(object, member);
    throw OutOfRangeException(
        QStringLiteral("%1: Please set %2 properly (origin: Setter).").arg(object, member.name));
}

void throwNotSetProperly(const QString &object, const MemberInfo &member)
{
    throw OutOfRangeException(QStringLiteral("%1: Please set %2 properly.").arg(object, member.name));
}

void throwIncompleteItem(const QString &object, const MemberInfo &member)
{
    throw IncompleteDefinitionException(
        QStringLiteral("%1: Tried to append not completely defined or invalid item %2.").arg(object, member.name));
}

void throwWithoutData(const QString &object, const MemberInfo &member)
{
    throw IncompleteDefinitionException(
        QStringLiteral("Parameters for %1 are not set properly in '%2'.").arg(member.name, object));
}

void throwEmptyBoolean(const QString &object, const QString &element)
{
    throw InvalidXmlException(
        QStringLiteral("Please set a value or a default for the boolean '%1' in '%2'.").arg(element, object));
}

void throwUnknownTag(const QString &object, const QString &element)
{
    throw InvalidXmlException(QStringLiteral("Unknown Tag '%1' in '%2'.").arg(element, object));
}

void throwLengthError(const QString &object)
{
    throw BinaryParsingException(
        object + QLatin1String("::SetBinary(...): Length error occurred during processing of binary representation"));
}

void throwInvalidChoice(const QString &object)
{
    throw OutOfRangeException(QStringLiteral("Invalid enum value set in '%1'.").arg(object));
}

void throwNothingChosen(const QString &object, const QString &choice)
{
    throw IncompleteDefinitionException(
        QStringLiteral("%1:Check failed. The mandatory choice %2 is not initialized").arg(object, choice));
}

void throwChosenNotSet(const QString &object, const MemberInfo &member)
{
    // contract: choices among texts and choices among objects are worded differently
    const QString text = member.holdsObjects()
        ? QStringLiteral("%1:Check failed. The mandatory member (choice element) %2 is not set.")
        : QStringLiteral("%1:Check failed. %2 is not set");
    throw IncompleteDefinitionException(text.arg(object, fieldName(member)));
}

void throwChosenWithoutData(const QString &object, const MemberInfo &member)
{
    throw IncompleteDefinitionException(
        QStringLiteral("%1:Check failed. Mandatory data of the member (choice element) %2 is not set.")
            .arg(object, fieldName(member)));
}

void throwNotSelected(const QString &object)
{
    // contract: spelled so
    throw IncompleteDefinitionException(object + QLatin1String(": Tried to access an Interface that is nor selected."));
}

} // namespace KORVE_XML::engine
