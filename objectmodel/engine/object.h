#pragma once

#include "objectmodel/engine/access.h"

/// What an object is and does apart from its outer forms: its storage and its content.
namespace KORVE_XML::engine
{

/// The object's own record: made if there is none, detached from copies if it is shared.
Record &recordOf(const Self &self);
/// The record of an object that is only looked at; that of a blank one if there is none. Nothing is made or detached.
const Record &viewOf(const IRGObject &object, const TypeInfo &type);
/// The same of an object within a record, by its field or list item.
inline const Record &viewAt(const MemberInfo &member, const void *field)
{
    const RecordPtr &d = member.object->handle(const_cast<void *>(field));
    return d ? *d : *member.type->blank;
}

bool isSet(RecordPtr &d, int bit);
void resetMember(const Self &self, int bit);
/// Clears all bits and puts the defaults back; an object without a record stays so.
void reset(const Self &self);
/// Makes the record, or resets the one there is by the object's own Reset.
void resetToDefault(const Self &self, IRGObject &object);
/// Empties the object and has @p value tested; the selection itself is left to the setter of an alternative.
void initChoice(const Self &self, IRGObject &object, int value);

bool hasData(const Self &self);
bool hasData(const Record &record, const TypeInfo &type);
bool anyData(const Self &self);
/// The selected alternative of a choice group, or null.
const MemberInfo *chosenMember(const Record &record, const TypeInfo &type);
bool equal(const Self &a, const Self &b);

} // namespace KORVE_XML::engine
