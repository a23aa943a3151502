#include "objectmodel/engine/assign.h"

#include "objectmodel/engine/settings.h"

namespace KORVE_XML::engine
{

void assignEnumeration(const Target &target, const MemberInfo &member, int value)
{
    if (target.validate && !member.enumeration->contains(value))
        throwRefusedBySetter(target.object.GetObjectName(), member);
    setEnumerationAt(member.field(target.record), value);
    markSet(target.record, member);
}

FreshItem::FreshItem(const Target &target, const MemberInfo &member)
    : target(target), member(member), list(member.field(target.record)), item(member.list->append(list))
{
    if (member.holdsObjects())
        copySettings(target.object, member.objectAt(item));
}

FreshItem::~FreshItem()
{
    if (!kept)
        member.list->dropLast(list);
}

void FreshItem::keep()
{
    if (target.validate && !isComplete(member, item))
        throwIncompleteItem(target.object.GetObjectName(), member);
    markSet(target.record, member);
    kept = true;
}

} // namespace KORVE_XML::engine
