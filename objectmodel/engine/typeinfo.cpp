#include "objectmodel/engine/typeinfo.h"

namespace KORVE_XML::engine {

namespace {

template <class Name> std::size_t hashOfName(const Name &name)
{
    const auto first = name[0].unicode();
    const auto last = name[name.size() - 1].unicode();
    return (std::size_t(name.size()) * 5 + first * 3u + last) % 64;
}

} // namespace

TypeInfo::TypeInfo(Facts given) : facts(std::move(given)), clearBits(int(facts.members.size()))
{
    firstByName.fill(-1);
    nextByName.assign(facts.members.size(), -1);
    for (std::size_t position = facts.members.size(); position-- > 0;) {
        facts.members[position].bit = int(position);
        qint8 &first = firstByName[hashOfName(facts.members[position].name)];
        nextByName[position] = std::exchange(first, qint8(position));
    }
    for (const MemberInfo &member : facts.members) {
        if (member.is(Attribute))
            written.push_back(&member);
        if (member.holdsObjects())
            nested.push_back(&member);
        countsAnything |= member.is(CountsAsData);
        countsChoice |= member.is(CountsAsData) && member.is(Alternative);
        mayDifferFromItself |=
            member.kind == Kind::Double || (member.holdsObjects() && member.objectType().mayDifferFromItself);
    }
    for (const MemberInfo &member : facts.members) {
        if (!member.is(Attribute))
            written.push_back(&member);
    }
    blank.reset(facts.create(clearBits));
}

const MemberInfo *TypeInfo::memberOfElement(QStringView name) const
{
    if (name.isEmpty())
        return nullptr;
    for (int position = firstByName[hashOfName(name)]; position >= 0; position = nextByName[position]) {
        if (name == facts.members[position].name)
            return &facts.members[position];
    }
    return nullptr;
}

const MemberInfo *TypeInfo::memberOfTag(quint32 tag) const
{
    for (const MemberInfo *member : written) {
        if (member->tag == tag)
            return member;
    }
    return nullptr;
}

} // namespace KORVE_XML::engine
