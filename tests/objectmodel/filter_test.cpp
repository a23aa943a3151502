#include "objectmodel/enumfilter.h"
#include "objectmodel/filterconditionlist.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::compactForm;
using modeltest::failureOf;
using modeltest::hex;
using modeltest::readCompact;
using modeltest::readTagged;
using modeltest::taggedPayload;
using modeltest::utf16;
using modeltest::xmlOf;

namespace
{

FilterCondition enabledCondition()
{
    FilterCondition condition;
    condition.SetColumn(1);
    condition.SetRole(2);
    BooleanFilter filter;
    filter.SetTestValue(true);
    condition.SetBooleanFilter(filter);
    return condition;
}

FilterConditionList listWithContent()
{
    FilterConditionList list;
    list.SetID("old");
    list.AppendFilterCondition(enabledCondition());
    return list;
}

EnumFilter enumFilter(const QVector<qint32> &values)
{
    EnumFilter filter;
    filter.SetEnumValue(values);
    return filter;
}

// The version element of the tagged form.
QByteArray versionFrame(const QString &version)
{
    QByteArray frame = bytes("ccfedfa1");
    QDataStream(&frame, QIODevice::Append) << quint32(4 + version.size() * 2) << quint32(version.size() * 2);
    return frame + utf16(version);
}

QByteArray compactText(const QString &text)
{
    QByteArray field;
    QDataStream(&field, QIODevice::WriteOnly) << quint32(text.size() * 2);
    return field + utf16(text);
}

} // namespace

static_assert(std::is_same_v<decltype(std::declval<const FilterConditionList &>().GetVersion()), const QString &>);

TEST(FilterList, HasTheVersionOfTheFormatEvenWhenUninitialized)
{
    const FilterConditionList list;
    EXPECT_EQ(list.GetVersion().toStdString(), "1.0");
    const REPORTGENERATOR::IRGObject &base = list;
    EXPECT_EQ(base.GetVersion().toStdString(), "1.0");
    EXPECT_TRUE(QString(list.GetInitialVersionLoaded()).isEmpty());
}

TEST(FilterList, WritesItsVersionAheadOfItsId)
{
    EXPECT_EQ(xmlOf(FilterConditionList()), "<FilterConditionList Version=\"1.0\"/>");
    FilterConditionList list;
    list.SetID("f");
    EXPECT_EQ(xmlOf(list), "<FilterConditionList Version=\"1.0\" ID=\"f\"/>");
    EXPECT_EQ(hex(taggedPayload(list)), hex(bytes("ccfedfa1 0000000a 00000006 0031002e0030"
                                                  "c59fe1c0 00000005 00000001 66")));
    EXPECT_EQ(hex(compactForm(list)), hex(bytes("02 00000006 0031002e0030 00000002 0066")));
}

TEST(FilterList, PutsItsConditionsBeforeItsIdInTheCompactForm)
{
    FilterConditionList list;
    list.GetFilterCondition();
    list.SetID("f");
    EXPECT_EQ(hex(compactForm(list)), hex(bytes("03 00000006 0031002e0030 00000000 00000002 0066")));
}

struct VersionCase {
    const char *name;
    const char *version;
    bool cleared;
};

void PrintTo(const VersionCase &row, std::ostream *out)
{
    *out << '"' << row.version << '"';
}

class LoadedVersion : public testing::TestWithParam<VersionCase>
{
protected:
    void expectLoaded(const FilterConditionList &list)
    {
        EXPECT_EQ(QString(list.GetInitialVersionLoaded()).toStdString(), GetParam().version);
        EXPECT_EQ(list.GetVersion().toStdString(), "1.0");
        EXPECT_EQ(list.IsIDSet(), !GetParam().cleared);
        EXPECT_EQ(list.GetFilterCondition().size(), GetParam().cleared ? 0 : 1);
    }
};

TEST_P(LoadedVersion, DecidesInXmlWhetherTheContentStays)
{
    FilterConditionList list = listWithContent();
    EXPECT_TRUE(
        list.SetXmlString(QStringLiteral("<FilterConditionList Version='%1'/>").arg(GetParam().version), false));
    expectLoaded(list);
}

TEST_P(LoadedVersion, DecidesInTheTaggedFormWhetherTheContentStays)
{
    FilterConditionList list = listWithContent();
    readTagged(list, versionFrame(GetParam().version));
    expectLoaded(list);
}

TEST_P(LoadedVersion, DoesNotTouchWhatFollowsIt)
{
    FilterConditionList fromXml = listWithContent();
    EXPECT_TRUE(fromXml.SetXmlString(
        QStringLiteral("<FilterConditionList Version='%1' ID='new'/>").arg(GetParam().version), false));
    EXPECT_EQ(fromXml.GetID().toStdString(), "new");
    FilterConditionList fromTagged;
    readTagged(fromTagged, versionFrame(GetParam().version) + bytes("c59fe1c0 00000007 00000003 6e6577"));
    EXPECT_EQ(fromTagged.GetID().toStdString(), "new");
    FilterConditionList fromCompact = listWithContent();
    readCompact(fromCompact, bytes("02") + compactText(GetParam().version) + compactText("new"));
    EXPECT_EQ(fromCompact.GetID().toStdString(), "new");
    EXPECT_TRUE(fromCompact.IsIDSet());
    EXPECT_EQ(QString(fromCompact.GetInitialVersionLoaded()).toStdString(), GetParam().version);
}

INSTANTIATE_TEST_SUITE_P(Versions, LoadedVersion,
                         testing::Values(VersionCase{"Older", "0.9", true}, VersionCase{"Zero", "0", true},
                                         VersionCase{"NoNumber", "old", true}, VersionCase{"Empty", "", true},
                                         VersionCase{"Negative", "-2", true}, VersionCase{"Current", "1.0", false},
                                         VersionCase{"CurrentInShort", "1", false}, VersionCase{"Newer", "1.1", false},
                                         VersionCase{"MuchNewer", "10", false}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(FilterList, WithoutAVersionCountsAsOld)
{
    FilterConditionList list = listWithContent();
    EXPECT_TRUE(list.SetXmlString("<FilterConditionList ID='new'/>", false));
    EXPECT_EQ(list.GetID().toStdString(), "new");
    EXPECT_TRUE(qAsConst(list).GetFilterCondition().isEmpty());
    EXPECT_TRUE(QString(list.GetInitialVersionLoaded()).isEmpty());
}

TEST(FilterList, OfTheCurrentVersionGrows)
{
    FilterConditionList list = listWithContent();
    EXPECT_TRUE(list.SetXmlString(listWithContent().GetXmlString(), false));
    EXPECT_EQ(qAsConst(list).GetFilterCondition().size(), 2);
    readTagged(list, taggedPayload(listWithContent()));
    EXPECT_EQ(qAsConst(list).GetFilterCondition().size(), 3);
}

TEST(FilterList, KeepsItsVersionsThroughReset)
{
    FilterConditionList list;
    EXPECT_TRUE(list.SetXmlString("<FilterConditionList Version='2.5'/>", false));
    list.Reset();
    list.ResetToDefault();
    EXPECT_EQ(QString(list.GetInitialVersionLoaded()).toStdString(), "2.5");
    EXPECT_EQ(list.GetVersion().toStdString(), "1.0");
}

TEST(FilterList, HandsItsVersionsToItsCopies)
{
    FilterConditionList list;
    EXPECT_TRUE(list.SetXmlString("<FilterConditionList Version='2.5'/>", false));
    const FilterConditionList copy(list);
    EXPECT_EQ(QString(copy.GetInitialVersionLoaded()).toStdString(), "2.5");
    FilterConditionList assigned;
    assigned = list;
    assigned.SetID("own");
    EXPECT_EQ(QString(assigned.GetInitialVersionLoaded()).toStdString(), "2.5");
    EXPECT_EQ(assigned.GetVersion().toStdString(), "1.0");
}

TEST(FilterList, DoesNotCompareVersions)
{
    FilterConditionList first = listWithContent();
    EXPECT_TRUE(first.SetXmlString("<FilterConditionList Version='2.5'/>", false));
    EXPECT_TRUE(first == listWithContent());
}

TEST(FilterList, AcceptsItsIdAsAnElementAndNothingElse)
{
    FilterConditionList list;
    EXPECT_TRUE(list.SetXmlString("<FilterConditionList><ID>f</ID></FilterConditionList>", false));
    EXPECT_EQ(list.GetID().toStdString(), "f");
    EXPECT_EQ(
        failureOf([&] { list.SetXmlString("<FilterConditionList><Version>1</Version></FilterConditionList>", false); }),
        "InvalidXmlException: Unknown Tag 'Version' in 'FilterConditionList'.");
}

TEST(FilterCondition, WritesItsAttributesInOrder)
{
    FilterCondition condition = enabledCondition();
    EXPECT_EQ(xmlOf(condition), "<FilterCondition Column=\"1\" Role=\"2\"><BooleanFilter><TestValue>true</TestValue>"
                                "</BooleanFilter></FilterCondition>");
    condition.SetName("n");
    condition.SetEnabled(false);
    EXPECT_EQ(xmlOf(condition), "<FilterCondition Name=\"n\" Column=\"1\" Role=\"2\" Enabled=\"false\"><BooleanFilter>"
                                "<TestValue>true</TestValue></BooleanFilter></FilterCondition>");
}

TEST(FilterCondition, PutsAllItsAttributesLastInTheCompactForm)
{
    FilterCondition condition = enabledCondition();
    // Four alternatives, then Name, Column, Role and Enabled.
    EXPECT_EQ(hex(compactForm(condition)), hex(bytes("68 01 01 0000000000000001 0000000000000002")));
    condition.SetName("n");
    condition.SetEnabled(false);
    EXPECT_EQ(hex(compactForm(condition)), hex(bytes("f8 01 01 00000002 006e 0000000000000001 0000000000000002 00")));
}

TEST(FilterCondition, IsEnabledWhenNothingIsSaid)
{
    FilterCondition condition;
    EXPECT_TRUE(condition.SetXmlString("<FilterCondition Column='-1' Role='7'/>", false));
    EXPECT_TRUE(condition.GetEnabled());
    EXPECT_FALSE(condition.IsEnabledSet());
    EXPECT_EQ(condition.GetColumn(), -1);
    EXPECT_EQ(condition.GetRole(), 7);
}

TEST(FilterCondition, AlwaysWritesItsMandatoryAttributesWithValidationOff)
{
    const FilterCondition condition;
    condition.SetValidate(false);
    EXPECT_EQ(xmlOf(condition), "<FilterCondition Column=\"0\" Role=\"0\"/>");
}

TEST(FilterCondition, IsRefusedByTheListWithoutColumnOrRole)
{
    FilterCondition condition = enabledCondition();
    condition.ResetRole();
    EXPECT_EQ(
        failureOf([&] { FilterConditionList().AppendFilterCondition(condition); }),
        "IncompleteDefinitionException: FilterConditionList: Tried to append not completely defined or invalid item "
        "FilterCondition.");
}

TEST(EnumFilterXml, BringsBackEveryValue)
{
    const EnumFilter filter = enumFilter({3, -1, 0, 2147483647});
    EXPECT_EQ(xmlOf(filter), "<EnumFilter><EnumValue>3</EnumValue><EnumValue>-1</EnumValue><EnumValue>0</EnumValue>"
                             "<EnumValue>2147483647</EnumValue></EnumFilter>");
    EnumFilter back;
    EXPECT_TRUE(back.SetXmlString(filter.GetXmlString(), false));
    EXPECT_TRUE(back == filter);
}

TEST(EnumFilterTagged, IsWrittenAsNumbersOfFourBytes)
{
    EXPECT_EQ(hex(taggedPayload(enumFilter({3, -1}))),
              hex(bytes("0f177993 00000014 00000002 00000004 00000003 00000004 ffffffff")));
}

TEST(EnumFilterTagged, IsReadAsTexts)
{
    EnumFilter filter;
    readTagged(filter, bytes("0f177993 00000017 00000002 00000005 00000001 37 00000006 00000002 2d31"));
    EXPECT_EQ(qAsConst(filter).GetEnumValue(), (QVector<qint32>{7, -1}));
}

// The writer's number is taken for the size of a text, so only zeros come back.
TEST(EnumFilterTagged, BringsBackOnlyZeros)
{
    for (const QVector<qint32> &values : {QVector<qint32>(), QVector<qint32>{0}, QVector<qint32>{0, 0, 0}}) {
        EnumFilter back;
        readTagged(back, taggedPayload(enumFilter(values)));
        EXPECT_EQ(qAsConst(back).GetEnumValue(), values);
    }
}

TEST(EnumFilterTagged, RefusesTheNumbersThatItWrote)
{
    EnumFilter back;
    EXPECT_EQ(failureOf([&] { readTagged(back, taggedPayload(enumFilter({5}))); }),
              "BinaryParsingException: EnumFilter::SetBinary(...): Length error occurred during processing of binary "
              "representation");
    EXPECT_TRUE(qAsConst(back).GetEnumValue().isEmpty());
}

TEST(EnumFilterAppend, NeverRefuses)
{
    EnumFilter filter;
    filter.AppendEnumValue(-1);
    filter.AppendEnumValue(std::numeric_limits<qint32>::min());
    EXPECT_EQ(qAsConst(filter).GetEnumValue().size(), 2);
}
