#include "objectmodel/engine/check.h"

#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/values.h"

namespace KORVE_XML::engine {

namespace {

const MemberInfo *chosenMember(const Record &record, const TypeInfo &type)
{
    for (const MemberInfo &member : type.facts.members) {
        if (member.is(Alternative) && member.alternative == record.choice)
            return &member;
    }
    return nullptr;
}

void checkChoice(const Record &record, const TypeInfo &type, const QString &name)
{
    const MemberInfo *chosen = chosenMember(record, type);
    if (!chosen)
        throwNothingChosen(name, type.facts.choiceName);
    if (!record.bits.testBit(chosen->bit))
        throwChosenNotSet(name, *chosen);
    if (chosen->holdsObjects() && !chosen->objectAt(chosen->field(record)).HasData())
        throwChosenWithoutData(name, *chosen);
}

void checkScalar(const MemberInfo &member, const Record &record, const QString &name)
{
    if (member.kind == Kind::Boolean)
        return;
    const bool set = record.bits.testBit(member.bit);
    if (set ? !isValidValue(member, member.field(record)) : member.is(Mandatory))
        throwNotSetProperly(name, member);
}

void checkObject(const MemberInfo &member, const void *field)
{
    const IRGObject &object = member.objectAt(field);
    check(viewOf(object, member.objectType()), member.objectType(), object.GetObjectName());
}

void checkNested(const MemberInfo &member, const Record &record)
{
    const void *field = member.field(record);
    const bool set = record.bits.testBit(member.bit);
    if (member.is(Alternative) && record.choice != member.alternative)
        return;
    if (!member.list) {
        if (set || member.is(Mandatory))
            checkObject(member, field);
        return;
    }
    for (int position = 0; set && position < member.list->size(field); ++position)
        checkObject(member, member.list->item(field, position));
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
    for (const MemberInfo &member : type.facts.members) {
        if (!member.list && !member.holdsObjects() && !member.is(Alternative))
            checkScalar(member, record, name);
    }
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
