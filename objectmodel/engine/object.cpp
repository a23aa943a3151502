#include "objectmodel/engine/object.h"

#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/values.h"

#include <algorithm>

namespace KORVE_XML::engine
{

namespace
{

void restoreDefault(const MemberInfo &member, Record &record)
{
    void *field = member.field(record);
    if (member.list)
        member.list->clear(field);
    else
        resetValue(member, field);
}

void detach(RecordPtr &d)
{
    if (d)
        d.detach();
}

bool isPresent(const MemberInfo &member, const Record &record)
{
    if (!member.list && member.kind == Kind::Text)
        return !valueAt<QString>(member.field(record)).isNull();
    return record.bits.test(member.bit);
}

bool hasContent(const MemberInfo &member, const Record &record)
{
    return member.list ? member.list->items(member.field(record)).count > 0 : isPresent(member, record);
}

bool equalMember(const MemberInfo &member, const Record &a, const Record &b)
{
    const bool set = a.bits.test(member.bit);
    if (set != b.bits.test(member.bit))
        return false;
    return !set || equalValue(member, member.field(a), member.field(b));
}

} // namespace

Record &recordOf(const Self &self)
{
    if (self.d) {
        self.d.detach();
    } else {
        self.d = RecordPtr(self.type.facts.create());
        pushSettings(self, *self.d);
    }
    return *self.d;
}

const Record &viewOf(const IRGObject &object, const TypeInfo &type)
{
    const RecordPtr &d = type.facts.handle(object);
    return d ? *d : *type.blank;
}

bool isSet(RecordPtr &d, int bit)
{
    detach(d);
    return d && d->bits.test(bit);
}

void resetMember(const Self &self, int bit)
{
    if (!self.d)
        return;
    self.d.detach();
    self.d->bits.clear(bit);
    restoreDefault(self.type.facts.members[std::size_t(bit)], *self.d);
}

void reset(const Self &self)
{
    if (!self.d)
        return;
    self.d.detach();
    self.d->bits = {};
    self.d->choice = -1;
    for (const MemberInfo &member : self.type.facts.members)
        restoreDefault(member, *self.d);
}

void resetToDefault(const Self &self, IRGObject &object)
{
    const bool hadRecord = self.d;
    recordOf(self);
    if (hadRecord)
        object.Reset();
}

void initChoice(const Self &self, IRGObject &object, int value)
{
    object.Reset();
    if (!self.type.facts.choice->contains(value))
        throwInvalidChoice(object.GetObjectName());
    // contract: the argument is tested and dropped
    recordOf(self);
}

bool hasData(const Self &self)
{
    detach(self.d);
    return hasData(viewOf(self.object, self.type), self.type);
}

bool hasData(const Record &record, const TypeInfo &type)
{
    if (!record.bits.contain(type.data))
        return false;
    const auto isNull = [&](const MemberInfo *text) { return !isPresent(*text, record); };
    if (std::any_of(type.dataTexts.begin(), type.dataTexts.end(), isNull))
        return false;
    const MemberInfo *chosen = chosenMember(record, type);
    return !type.countsChoice || (chosen && isPresent(*chosen, record));
}

const MemberInfo *chosenMember(const Record &record, const TypeInfo &type)
{
    return record.choice < 0 ? nullptr : type.alternatives[std::size_t(record.choice)];
}

bool anyData(const Self &self)
{
    detach(self.d);
    const auto &members = self.type.facts.members;
    return self.d && std::any_of(members.begin(), members.end(), [&](const MemberInfo &member) {
               return hasContent(member, *self.d);
           });
}

bool equal(const Self &a, const Self &b)
{
    // Both are only looked at: to detach them first would cost a copy and change no answer.
    if (a.d == b.d && !a.type.mayDifferFromItself)
        return true;
    const Record &left = viewOf(a.object, a.type);
    const Record &right = viewOf(b.object, b.type);
    const auto &members = a.type.facts.members;
    return std::all_of(members.begin(), members.end(),
                       [&](const MemberInfo &member) { return equalMember(member, left, right); });
}

} // namespace KORVE_XML::engine
