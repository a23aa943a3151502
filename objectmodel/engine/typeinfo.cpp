#include "objectmodel/engine/typeinfo.h"

namespace KORVE_XML::engine
{

namespace
{

template <class Name> std::size_t hashOfName(const Name &name)
{
    const auto first = name[0].unicode();
    const auto last = name[name.size() - 1].unicode();
    return (std::size_t(name.size()) * 5 + first * 3u + last) % 64;
}

bool canBeInvalid(const MemberInfo &member)
{
    return member.kind == Kind::Text || member.kind == Kind::Enumeration || member.limit != Limit::None;
}

qptrdiff offsetIn(const Record &record, const MemberInfo &member)
{
    const void *field = member.fieldOf(const_cast<Record &>(record));
    return static_cast<const char *>(field) - reinterpret_cast<const char *>(&record);
}

} // namespace

TypeInfo::TypeInfo(Facts given) : facts(std::move(given)), blank(facts.create())
{
    firstByName.fill(-1);
    nextByName.assign(facts.members.size(), -1);
    for (std::size_t position = facts.members.size(); position-- > 0;) {
        facts.members[position].bit = int(position);
        qint8 &first = firstByName[hashOfName(facts.members[position].name)];
        nextByName[position] = std::exchange(first, qint8(position));
    }
    for (MemberInfo &member : facts.members) {
        if (member.is(Attribute))
            written.push_back(&member);
        add(member);
    }
    for (const MemberInfo &member : facts.members) {
        if (!member.is(Attribute))
            written.push_back(&member);
    }
}

void TypeInfo::add(MemberInfo &member)
{
    const bool isSingleValue = !member.list && !member.holdsObjects() && !member.is(Alternative);
    const bool isText = !member.list && member.kind == Kind::Text;
    member.offset = offsetIn(*blank, member);
    if (member.holdsObjects()) {
        member.type = &member.object->type();
        nested.push_back(&member);
    }
    if (isSingleValue && member.is(Mandatory))
        mandatory.set(member.bit);
    if (isSingleValue && canBeInvalid(member))
        validated.push_back(&member);
    if (member.is(Mandatory))
        alwaysWritten.set(member.bit);
    if (member.is(Alternative))
        alternatives.push_back(&member);
    if (member.is(CountsAsData) && member.is(Alternative))
        countsChoice = true;
    else if (member.is(CountsAsData) && isText)
        dataTexts.push_back(&member);
    else if (member.is(CountsAsData))
        data.set(member.bit);
    mayDifferFromItself |= member.kind == Kind::Double || (member.type && member.type->mayDifferFromItself);
}

const MemberInfo *TypeInfo::memberOfElement(QStringView name) const
{
    if (name.isEmpty())
        return nullptr;
    for (int position = firstByName[hashOfName(name)]; position >= 0; position = nextByName[std::size_t(position)]) {
        if (name == facts.members[std::size_t(position)].name)
            return &facts.members[std::size_t(position)];
    }
    return nullptr;
}

const MemberInfo *TypeInfo::memberOfTag(quint32 tag, std::size_t &expected) const
{
    for (std::size_t tried = 0; tried < written.size(); ++tried) {
        const MemberInfo *const member = written[expected];
        expected = expected + 1 == written.size() ? 0 : expected + 1;
        if (member->tag == tag)
            return member;
    }
    return nullptr;
}

} // namespace KORVE_XML::engine
