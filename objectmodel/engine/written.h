#pragma once

#include "objectmodel/engine/typeinfo.h"

namespace KORVE_XML::engine
{

/// Whether an alternative is the selected one; true for all other members.
inline bool isSelected(const MemberInfo &member, const Record &record)
{
    return !member.is(Alternative) || record.choice == member.alternative;
}

/// Whether XML and tagged form hold the member: a list by its size, not by its bit.
inline bool isWritten(const MemberInfo &member, const Record &record)
{
    if (member.list)
        return member.list->items(member.field(record)).count > 0;
    return member.is(Mandatory) || (record.bits.test(member.bit) && isSelected(member, record));
}
} // namespace KORVE_XML::engine
