#include "tests/support/objectmodel/everyclass.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/outline.h"

using modeltest::expectedOutline;
using modeltest::failureOf;
using modeltest::hex;
using modeltest::Member;
using modeltest::MemberAccess;
using modeltest::Order;
using modeltest::taggedForm;
using modeltest::taggedPayload;

class EveryForm : public modeltest::EveryClass
{
protected:
    // The tagged form of a list of numbers is written and read differently.
    bool comesBackFromTaggedForm() const { return name != "EnumFilter"; }

    std::string presenceBits(const Object &object) const
    {
        const QByteArray form = compact(object);
        std::string bits;
        for (size_t index = 0; index < table.members.size(); ++index)
            bits += form[static_cast<int>(index / 8)] >> (index % 8) & 1 ? '1' : '0';
        return bits;
    }
};

INSTANTIATE_TEST_SUITE_P(Of, EveryForm, testing::ValuesIn(modeltest::schema()), modeltest::className);

TEST_P(EveryForm, XmlHasTheMembersInTheOrderOfTheTable)
{
    EXPECT_EQ(modeltest::xmlOutline(table.name, type.filled()->GetXmlString()),
              expectedOutline(table.name, Order::Table));
}

TEST_P(EveryForm, TaggedHasTheTagsInTheOrderOfTheTable)
{
    EXPECT_EQ(modeltest::taggedOutline(table.name, taggedPayload(*type.filled())),
              expectedOutline(table.name, Order::Table));
}

TEST_P(EveryForm, CompactHasTheFieldsInTheOrderOfTheAccessors)
{
    EXPECT_EQ(modeltest::compactOutline(table.name, compact(*type.filled())),
              expectedOutline(table.name, Order::Accessors));
}

TEST_P(EveryForm, CompactHasThePresenceBitsInTheOrderOfTheAccessors)
{
    const std::string all = presenceBits(*type.filled());
    const std::vector<Member> order = table.accessorOrder();
    for (const MemberAccess &member : type.members) {
        const auto place =
            std::find_if(order.begin(), order.end(), [&](const Member &line) { return line.name == member.name; });
        std::string expected = all;
        expected[static_cast<size_t>(place - order.begin())] = '0';
        EXPECT_EQ(presenceBits(*filledWithout(member)), expected) << member.name.toStdString();
    }
}

TEST_P(EveryForm, XmlComesBack)
{
    const auto object = type.filled();
    const auto back = type.make();
    EXPECT_TRUE(back->SetXmlString(object->GetXmlString(), false));
    EXPECT_TRUE(type.equal(*back, *object));
    EXPECT_EQ(modeltest::xmlOf(*back), modeltest::xmlOf(*object));
}

TEST_P(EveryForm, XmlMayHoldAnAttributeAsAChildElement)
{
    for (const MemberAccess &member : type.members) {
        const Member &line = lineOf(member);
        if (!line.attribute)
            continue;
        const QString text = modeltest::sampleAsText({table.name, line.name, 0}, line).toHtmlEscaped();
        const auto object = type.make();
        EXPECT_TRUE(object->SetXmlString(QString("<%1><%2>%3</%2></%1>").arg(table.name, line.xmlName, text), false));
        EXPECT_TRUE(member.isSet(*object));
        EXPECT_EQ(member.value(*object).toStdString(), member.value(*type.filled()).toStdString());
    }
}

TEST_P(EveryForm, TaggedComesBack)
{
    if (!comesBackFromTaggedForm())
        return;
    const auto object = type.filled();
    const auto back = type.make();
    modeltest::readTagged(*back, taggedPayload(*object));
    EXPECT_TRUE(type.equal(*back, *object));
    EXPECT_EQ(hex(taggedPayload(*back)), hex(taggedPayload(*object)));
}

TEST_P(EveryForm, CompactComesBack)
{
    const auto object = type.filled();
    const auto back = type.make();
    readCompact(*back, compact(*object));
    EXPECT_TRUE(type.equal(*back, *object));
    EXPECT_EQ(hex(compact(*back)), hex(compact(*object)));
}

TEST_P(EveryForm, CompactOfAnEmptyObjectComesBack)
{
    const auto back = type.filled();
    readCompact(*back, compact(*type.make()));
    EXPECT_TRUE(type.equal(*back, *type.make()));
}

TEST_P(EveryForm, WholeDocumentsComeBack)
{
    const auto object = type.filled();
    const QByteArray document = object->GetBinaryRepresentationAsQByteArray();
    EXPECT_EQ(hex(document), hex(taggedForm(*object, static_cast<quint32>(type.id))));
    EXPECT_EQ(hex(qUncompress(object->GetCompressedBinaryRepresentationAsQByteArray(9))), hex(document));
    if (!comesBackFromTaggedForm())
        return;
    QDataStream stream(document);
    const auto back = type.make();
    EXPECT_TRUE(back->SetBinaryRepresentation(stream));
    EXPECT_TRUE(type.equal(*back, *object));
}

TEST_P(EveryForm, OfAnEmptyObjectIsAFailureNothingOrAnEmptyElement)
{
    const auto object = type.make();
    const bool incomplete = !failureOf([&] { type.make()->Check(); }).empty();
    std::string xml;
    QByteArray tagged;
    EXPECT_EQ(!failureOf([&] { xml = modeltest::xmlOf(*object); }).empty(), incomplete);
    EXPECT_EQ(!failureOf([&] { tagged = taggedForm(*object, 1); }).empty(), incomplete);
    EXPECT_EQ(xml.empty(), incomplete || table.hasRequirements());
    EXPECT_EQ(tagged.isEmpty(), incomplete || table.hasRequirements());
    if (!xml.empty() && name != "FilterConditionList") {
        EXPECT_EQ(xml, "<" + name + "/>");
        EXPECT_EQ(hex(tagged), "0000000100000000");
    }
}

TEST_P(EveryForm, HoldsWhateverThereIsWithValidationOff)
{
    const auto object = type.make();
    object->SetValidate(false);
    const std::string xml = modeltest::xmlOf(*object);
    EXPECT_EQ(xml.rfind("<" + name, 0), 0u) << xml;
    EXPECT_GE(taggedForm(*object, 1).size(), 8);
    const auto back = type.make();
    back->SetValidate(false);
    EXPECT_TRUE(back->SetXmlString(object->GetXmlString(), false));
    EXPECT_EQ(modeltest::xmlOf(*back), xml);
}

TEST_P(EveryForm, OfAListThatWasOnlyLookedAtIsEmptyButForTheCompactCount)
{
    for (const MemberAccess &member : type.members) {
        if (!member.list)
            continue;
        const auto object = type.make();
        object->SetValidate(false);
        const int before = compact(*object).size();
        const QByteArray tagged = taggedPayload(*object);
        member.look(*object);
        EXPECT_EQ(hex(taggedPayload(*object)), hex(tagged)) << member.name.toStdString();
        EXPECT_EQ(compact(*object).size(), before + 4) << member.name.toStdString();
    }
}

TEST_P(EveryForm, LetsListsGrowAndMergesObjects)
{
    if (!comesBackFromTaggedForm())
        return;
    const auto fromTagged = type.filled();
    modeltest::readTagged(*fromTagged, taggedPayload(*type.filled()));
    const auto fromXml = type.filled();
    EXPECT_TRUE(fromXml->SetXmlString(type.filled()->GetXmlString(), false));
    for (const MemberAccess &member : type.members) {
        const std::string expected = member.list ? "4 items" : member.value(*type.filled()).toStdString();
        EXPECT_EQ(member.value(*fromTagged).toStdString(), expected) << member.name.toStdString();
        EXPECT_EQ(member.value(*fromXml).toStdString(), expected) << member.name.toStdString();
    }
}
