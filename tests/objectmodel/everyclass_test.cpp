#include "tests/support/objectmodel/everyclass.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <set>

using modeltest::EveryClass;
using modeltest::failureOf;
using modeltest::Kind;
using modeltest::Member;
using modeltest::MemberAccess;

namespace
{

constexpr int otherSeed = 51; // odd, so that booleans and enumerations differ too

// What the getter of an unset member yields, in the words of textOf.
QString defaultOf(const QString &className, const Member &member)
{
    if (member.list)
        return "0 items";
    switch (member.kind) {
    case Kind::Object:
        return "no content";
    case Kind::Text:
    case Kind::DateTime:
        return "null";
    case Kind::Enumeration:
        return QString::number(modeltest::literalsOf(className, member.typeName).indexOf(member.defaultText));
    case Kind::Bool:
        return member.defaultText == "-" ? "false" : member.defaultText;
    default:
        return member.defaultText == "-" ? "0" : member.defaultText;
    }
}

std::string fieldName(const Member &member)
{
    return ("m_" + member.name.left(1).toLower() + member.name.mid(1)).toStdString();
}

// What a list says of an item without content; nothing where such an item is welcome.
bool refusesEmptyItem(const Member &list)
{
    switch (list.kind) {
    case Kind::Object:
        return modeltest::schemaOf(list.typeName).hasRequirements();
    case Kind::Text:
    case Kind::Enumeration:
        return true;
    default:
        return false;
    }
}

// The virtual operations that each class has for itself, by their places.
const std::set<int> overridden{2, 3, 4, 5, 20, 21, 22, 28, 38, 40, 43, 45};
constexpr int getVersionPlace = 42;

const void *const *virtualTable(const REPORTGENERATOR::IRGObject &object)
{
    return *reinterpret_cast<const void *const *const *>(&object);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, EveryClass, testing::ValuesIn(modeltest::schema()), modeltest::className);

TEST(AllClasses, AreInTheTableAndHaveAccess)
{
    ASSERT_EQ(modeltest::schema().size(), 52u);
    ASSERT_EQ(modeltest::objectClasses().size(), 52u);
    for (size_t index = 0; index < 52; ++index)
        EXPECT_EQ(modeltest::objectClasses()[index].name.toStdString(), modeltest::schema()[index].name.toStdString());
}

TEST_P(EveryClass, HasItsNameAndIdentifier)
{
    EXPECT_EQ(type.name.toStdString(), name);
    EXPECT_EQ(type.make()->GetObjectName().toStdString(), name);
    EXPECT_EQ(type.id, table.id);
    EXPECT_GE(type.id, 0);
}

// Two classes share what both inherit, and have each their own of what both override.
TEST_P(EveryClass, OverridesWhatIsPublishedAndAddsNoVirtualOperation)
{
    const auto object = type.make();
    const auto other = modeltest::objectClass(name == "PelinInfo" ? "LinkedRecord" : "PelinInfo").make();
    for (int place = 2; place <= 45; ++place) {
        const bool own = overridden.count(place) || (place == getVersionPlace && name == "FilterConditionList");
        EXPECT_EQ(virtualTable(*object)[place] != virtualTable(*other)[place], own) << place;
    }
    EXPECT_EQ(type.slotBehind, 46);
}

TEST_P(EveryClass, HasTheMembersOfTheTable)
{
    ASSERT_EQ(type.members.size(), table.members.size());
    for (size_t index = 0; index < type.members.size(); ++index) {
        const MemberAccess &access = type.members[index];
        const Member &line = table.members[index];
        SCOPED_TRACE(line.name.toStdString());
        EXPECT_EQ(access.name, line.name);
        EXPECT_EQ(access.kind, line.kind);
        EXPECT_EQ(access.list, line.list);
        EXPECT_EQ(access.alternative, line.alternative);
    }
}

TEST_P(EveryClass, IsEmptyAndUninitializedWhenNew)
{
    const auto object = type.make();
    EXPECT_EQ(object->HasData(), !table.hasRequirements());
    EXPECT_FALSE(type.anyData(*object));
    for (const MemberAccess &member : type.members)
        EXPECT_FALSE(member.isSet(*object)) << member.name.toStdString();
    EXPECT_FALSE(type.isInitialized(*object));
}

TEST_P(EveryClass, YieldsDefaultsForUnsetMembers)
{
    for (const MemberAccess &member : type.members) {
        SCOPED_TRACE(member.name.toStdString());
        const auto object = type.make();
        const std::string expected = defaultOf(table.name, lineOf(member)).toStdString();
        if (member.defaultValue) {
            EXPECT_EQ(member.defaultValue(*object).toStdString(), expected);
        }
        EXPECT_EQ(member.value(*object).toStdString(), expected);
        EXPECT_FALSE(member.isSet(*object));
        EXPECT_TRUE(type.isInitialized(*object));
        EXPECT_FALSE(type.anyData(*object));
    }
}

TEST_P(EveryClass, SetsAndResetsOneMemberAtATime)
{
    for (const MemberAccess &member : type.members) {
        const auto object = type.make();
        member.reset(*object);
        EXPECT_FALSE(type.isInitialized(*object));
        member.fill(*object, otherSeed);
        for (const MemberAccess &each : type.members)
            EXPECT_EQ(each.isSet(*object), &each == &member) << each.name.toStdString();
        EXPECT_TRUE(type.anyData(*object));
        member.reset(*object);
        EXPECT_FALSE(type.anyData(*object)) << member.name.toStdString();
        EXPECT_EQ(member.value(*object).toStdString(), defaultOf(table.name, lineOf(member)).toStdString());
    }
}

TEST_P(EveryClass, IsCompleteWhenFilled)
{
    const auto object = type.filled();
    for (const MemberAccess &member : type.members)
        EXPECT_EQ(member.isSet(*object), isFilled(member)) << member.name.toStdString();
    EXPECT_TRUE(object->HasData() && type.anyData(*object));
    EXPECT_EQ(failureOf([&] { object->Check(); }), "");
}

TEST_P(EveryClass, GetsBackToItsDefaults)
{
    const auto reset = type.filled();
    reset->Reset();
    const auto defaulted = type.filled();
    type.resetToDefault(*defaulted);
    const auto fresh = type.make();
    type.resetToDefault(*fresh);
    for (const auto &object : {reset.get(), defaulted.get(), fresh.get()}) {
        EXPECT_TRUE(type.isInitialized(*object));
        EXPECT_FALSE(type.anyData(*object));
        EXPECT_TRUE(type.equal(*object, *type.make()));
        for (const MemberAccess &member : type.members)
            EXPECT_EQ(member.value(*object).toStdString(), defaultOf(table.name, lineOf(member)).toStdString());
    }
}

TEST_P(EveryClass, HasDataOnlyWithEveryRequiredMember)
{
    for (const MemberAccess &member : type.members)
        EXPECT_EQ(filledWithout(member)->HasData(), !(lineOf(member).countsAsData && isFilled(member)))
            << member.name.toStdString();
}

TEST_P(EveryClass, ChecksEveryMandatoryMember)
{
    for (const MemberAccess &member : type.members) {
        SCOPED_TRACE(member.name.toStdString());
        const Member &line = lineOf(member);
        const std::string failure = failureOf([&] { filledWithout(member)->Check(); });
        if (line.mandatory && line.isScalar()) {
            EXPECT_EQ(failure,
                      "OutOfRangeException: " + name + ": Please set " + line.xmlName.toStdString() + " properly.");
        } else {
            EXPECT_EQ(failure.empty(), !line.mandatory && !(line.alternative && isFilled(member)));
        }
    }
}

TEST_P(EveryClass, RefusesNullTextsAndInvalidEnumerations)
{
    for (const MemberAccess &member : type.members) {
        if (!member.setInvalid)
            continue;
        SCOPED_TRACE(member.name.toStdString());
        const auto object = type.make();
        const std::string expected =
            member.kind == Kind::Text
                ? name + ": Please set " + member.name.toStdString() + " properly (origin: Setter)."
                : "enum is not valid (classname=" + name + ",membername=" + fieldName(lineOf(member)) + ")";
        EXPECT_FALSE(member.acceptsInvalid(*object));
        EXPECT_EQ(failureOf([&] { member.setInvalid(*object); }), "OutOfRangeException: " + expected);
        EXPECT_FALSE(member.isSet(*object));
        object->SetValidate(false);
        EXPECT_EQ(failureOf([&] { member.setInvalid(*object); }), "");
        EXPECT_TRUE(member.isSet(*object));
    }
}

TEST_P(EveryClass, ChecksOptionalMembersThatAreSetAndInvalid)
{
    for (const MemberAccess &member : type.members) {
        if (!member.setInvalid || member.alternative)
            continue;
        const auto object = type.filled();
        object->SetValidate(false);
        member.setInvalid(*object);
        EXPECT_EQ(failureOf([&] { object->Check(); }),
                  "OutOfRangeException: " + name + ": Please set " + member.name.toStdString() + " properly.");
    }
}

TEST_P(EveryClass, RefusesItemsWithoutData)
{
    for (const MemberAccess &member : type.members) {
        if (!member.appendEmpty)
            continue;
        const auto object = type.make();
        const bool refused = refusesEmptyItem(lineOf(member));
        EXPECT_EQ(failureOf([&] { member.appendEmpty(*object); }),
                  refused ? "IncompleteDefinitionException: " + name +
                                ": Tried to append not completely defined or invalid item " +
                                member.name.toStdString() + "."
                          : "");
        EXPECT_EQ(member.value(*object).toStdString(), refused ? "0 items" : "1 items");
        EXPECT_EQ(member.isSet(*object), !refused);
        object->SetValidate(false);
        EXPECT_EQ(failureOf([&] { member.appendEmpty(*object); }), "");
        EXPECT_TRUE(member.isSet(*object));
    }
}

TEST_P(EveryClass, ReadsOrRefusesAnEmptyBoolean)
{
    for (const MemberAccess &member : type.members) {
        if (member.kind != Kind::Bool)
            continue;
        SCOPED_TRACE(member.name.toStdString());
        const Member &line = lineOf(member);
        const QString document =
            QString(line.attribute ? "<%1 %2=''/>" : "<%1><%2></%2></%1>").arg(table.name, line.xmlName);
        const auto object = type.make();
        EXPECT_EQ(failureOf([&] { EXPECT_TRUE(object->SetXmlString(document, false)); }),
                  line.limits == "refused" ? "InvalidXmlException: Please set a value or a default for the boolean '" +
                                                 line.xmlName.toStdString() + "' in '" + name + "'."
                                           : "");
        EXPECT_EQ(member.isSet(*object), line.limits != "refused");
        EXPECT_EQ(member.value(*object).toStdString(), defaultOf(table.name, line).toStdString());
    }
}

TEST_P(EveryClass, SetsTheBitOfAListOrObjectThatIsLookedAt)
{
    for (const MemberAccess &member : type.members) {
        const auto object = type.make();
        if (!member.look)
            continue;
        member.look(*object);
        EXPECT_TRUE(member.isSet(*object)) << member.name.toStdString();
        EXPECT_EQ(type.anyData(*object), !member.list) << member.name.toStdString();
    }
}

TEST_P(EveryClass, IsEqualOnlyWithTheSameContent)
{
    const auto object = type.filled();
    EXPECT_TRUE(type.equal(*object, *type.filled()) && !type.unequal(*object, *type.filled()));
    for (const MemberAccess &member : type.members) {
        SCOPED_TRACE(member.name.toStdString());
        const auto other = type.filled();
        member.fill(*other, otherSeed);
        EXPECT_FALSE(type.equal(*object, *other));
        EXPECT_TRUE(type.unequal(*other, *object));
        member.reset(*other);
        EXPECT_EQ(type.equal(*object, *other), !isFilled(member));
    }
}

TEST_P(EveryClass, IsIndependentOfItsCopies)
{
    const auto object = type.filled();
    for (const MemberAccess &member : type.members) {
        const auto copy = type.copy(*object);
        EXPECT_TRUE(type.equal(*copy, *object));
        member.fill(*copy, otherSeed);
        EXPECT_TRUE(type.equal(*object, *type.filled())) << member.name.toStdString();
        type.assign(*copy, *object);
        EXPECT_TRUE(type.equal(*copy, *object)) << member.name.toStdString();
    }
}
