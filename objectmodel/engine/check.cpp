#include "objectmodel/engine/check.h"

#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/values.h"

#include <algorithm>

namespace KORVE_XML::engine
{

namespace
{

void checkChoice(const Record &record, const TypeInfo &type, const QString &name)
{
    const MemberInfo *chosen = chosenMember(record, type);
    if (!chosen)
        throwNothingChosen(name, type.facts.choiceName);
    if (!record.bits.test(chosen->bit))
        throwChosenNotSet(name, *chosen);
    if (chosen->holdsObjects() && !chosen->objectAt(chosen->field(record)).HasData())
        throwChosenWithoutData(name, *chosen);
}

bool isMissingOrInvalid(const MemberInfo &member, const Record &record)
{
    return record.bits.test(member.bit) ? !isValidValue(member, member.field(record)) : member.is(Mandatory);
}

bool hasMissingOrInvalid(const Record &record, const TypeInfo &type)
{
    const auto isBad = [&](const MemberInfo *member) { return isMissingOrInvalid(*member, record); };
    return !record.bits.contain(type.mandatory) || std::any_of(type.validated.begin(), type.validated.end(), isBad);
}

void checkScalars(const Record &record, const TypeInfo &type, const QString &name)
{
    // Most objects are good: only for the others it matters which member is the first bad one.
    if (!hasMissingOrInvalid(record, type))
        return;
    for (const MemberInfo &member : type.facts.members) {
        const bool isScalar = !member.list && !member.holdsObjects() && !member.is(Alternative);
        if (isScalar && member.kind != Kind::Boolean && isMissingOrInvalid(member, record))
            throwNotSetProperly(name, member);
    }
}

void checkObject(const MemberInfo &member, const void *field)
{
    const IRGObject &object = member.objectAt(field);
    check(viewOf(object, *member.type), *member.type, object.GetObjectName());
}

void checkNested(const MemberInfo &member, const Record &record)
{
    const void *field = member.field(record);
    const bool set = record.bits.test(member.bit);
    if (member.is(Alternative) && record.choice != member.alternative)
        return;
    if (!member.list) {
        if (set || member.is(Mandatory))
            checkObject(member, field);
        return;
    }
    const Items items = member.list->items(field);
    for (int position = 0; set && position < items.count; ++position)
        checkObject(member, items.at(position));
}

} // namespace

void check(const Self &self)
{
    Record &record = recordOf(self);
    pushSettings(self, record);
    check(record, self.type, self.object.GetObjectName());
}

void check(const Record &record, const TypeInfo &type, const QString &name)
{
    if (type.facts.choice)
        checkChoice(record, type, name);
    checkScalars(record, type, name);
    for (const MemberInfo *member : type.nested)
        checkNested(*member, record);
}

bool mayBeWritten(const Self &self, const Record &record)
{
    if (!self.object.GetValidate())
        return true;
    check(record, self.type, self.object.GetObjectName());
    return hasData(record, self.type);
}

} // namespace KORVE_XML::engine
