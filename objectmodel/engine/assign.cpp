#include "objectmodel/engine/assign.h"

#include "objectmodel/engine/settings.h"

namespace KORVE_XML::engine {

void assignEnumeration(const IRGObject &object, Record &record, const MemberInfo &member, int value)
{
    if (object.GetValidate() && !member.enumeration->contains(value))
        throwRefusedBySetter(object.GetObjectName(), member);
    setEnumerationAt(member.field(record), value);
    markSet(record, member);
}

FreshItem::FreshItem(const IRGObject &object, Record &record, const MemberInfo &member)
    : object(object), record(record), member(member), list(member.field(record)), item(member.list->append(list))
{
    if (member.holdsObjects())
        copySettings(object, member.objectAt(item));
}

FreshItem::~FreshItem()
{
    if (!kept)
        member.list->dropLast(list);
}

void FreshItem::keep()
{
    if (object.GetValidate() && !isComplete(member, item))
        throwIncompleteItem(object.GetObjectName(), member);
    markSet(record, member);
    kept = true;
}

} // namespace KORVE_XML::engine
