#include "objectmodel/filtercondition.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <functional>

using namespace KORVE_XML;
using modeltest::failureOf;

namespace
{

// What every condition needs beside its alternative.
FilterCondition placed()
{
    FilterCondition condition;
    condition.SetColumn(1);
    condition.SetRole(2);
    return condition;
}

struct AlternativeCase {
    const char *name; // of the alternative, and of its class
    std::function<void(FilterCondition &)> select;
    const char *mandatoryText; // of an empty alternative; none where nothing is required
    std::function<void(FilterCondition &)> selectEmpty;
    std::function<void(FilterCondition &)> reset;
};

void PrintTo(const AlternativeCase &row, std::ostream *out)
{
    *out << row.name;
}

template <class T> T filled()
{
    T object;
    modeltest::fill(object);
    return object;
}

// The only content that the tagged form brings back.
template <> EnumFilter filled()
{
    EnumFilter filter;
    filter.SetEnumValue({0, 0});
    return filter;
}

} // namespace

class Alternative : public testing::TestWithParam<AlternativeCase>
{
protected:
    QString fieldName() const
    {
        const QString name = GetParam().name;
        return "m_" + name.left(1).toLower() + name.mid(1);
    }
};

TEST_P(Alternative, IsSelectedByReadingItInEveryForm)
{
    FilterCondition condition = placed();
    GetParam().select(condition);
    EXPECT_EQ(condition.ChoiceFilterConditionToName(condition.GetChoiceFilterCondition()).toStdString(),
              GetParam().name);
    FilterCondition fromXml;
    EXPECT_TRUE(fromXml.SetXmlString(condition.GetXmlString(), false));
    EXPECT_EQ(fromXml.GetChoiceFilterCondition(), condition.GetChoiceFilterCondition());
    EXPECT_TRUE(fromXml == condition);
    FilterCondition fromTagged;
    modeltest::readTagged(fromTagged, modeltest::taggedPayload(condition));
    EXPECT_EQ(fromTagged.GetChoiceFilterCondition(), condition.GetChoiceFilterCondition());
    EXPECT_TRUE(fromTagged == condition);
    FilterCondition fromCompact;
    modeltest::readCompact(fromCompact, modeltest::compactForm(condition));
    EXPECT_EQ(fromCompact.GetChoiceFilterCondition(), condition.GetChoiceFilterCondition());
    EXPECT_TRUE(fromCompact == condition);
}

TEST_P(Alternative, MustBeSetWhenItIsSelected)
{
    FilterCondition condition = placed();
    GetParam().select(condition);
    EXPECT_EQ(failureOf([&] { condition.Check(); }), "");
    GetParam().reset(condition);
    EXPECT_EQ(failureOf([&] { condition.Check(); }),
              ("IncompleteDefinitionException: FilterCondition:Check failed. The mandatory member (choice element) " +
               fieldName() + " is not set.")
                  .toStdString());
}

TEST_P(Alternative, MustHaveDataWhenItIsSelected)
{
    FilterCondition condition = placed();
    GetParam().selectEmpty(condition);
    EXPECT_EQ(failureOf([&] { condition.Check(); }), GetParam().mandatoryText);
}

const char *const noStringFilter = "IncompleteDefinitionException: FilterCondition:Check failed. Mandatory data of the "
                                   "member (choice element) m_stringFilter is not set.";
const char *const noNumberFilter = "IncompleteDefinitionException: FilterCondition:Check failed. Mandatory data of the "
                                   "member (choice element) m_numberFilter is not set.";
const char *const noBooleanFilter =
    "IncompleteDefinitionException: FilterCondition:Check failed. Mandatory data of the "
    "member (choice element) m_booleanFilter is not set.";

#define KORVE_ALTERNATIVE_CASE(Filter, mandatoryText)                                                                  \
    AlternativeCase                                                                                                    \
    {                                                                                                                  \
#Filter, [](FilterCondition &condition) { condition.Set##Filter(filled<Filter>()); }, mandatoryText, \
                    [](FilterCondition &condition) { condition.Set##Filter(Filter()); },                               \
                    [](FilterCondition &condition) { condition.Reset##Filter(); }                 \
    }

INSTANTIATE_TEST_SUITE_P(Filters, Alternative,
                         testing::Values(KORVE_ALTERNATIVE_CASE(StringFilter, noStringFilter),
                                         KORVE_ALTERNATIVE_CASE(NumberFilter, noNumberFilter),
                                         KORVE_ALTERNATIVE_CASE(EnumFilter, ""),
                                         KORVE_ALTERNATIVE_CASE(BooleanFilter, noBooleanFilter)),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(CheckOfACondition, ComesBeforeTheOtherMembers)
{
    FilterCondition condition;
    EXPECT_EQ(
        failureOf([&] { condition.Check(); }),
        "IncompleteDefinitionException: FilterCondition:Check failed. The mandatory choice ChoiceFilterCondition is "
        "not initialized");
    condition.SetEnumFilter(EnumFilter());
    EXPECT_EQ(failureOf([&] { condition.Check(); }),
              "OutOfRangeException: FilterCondition: Please set Column properly.");
    condition.SetColumn(0);
    EXPECT_EQ(failureOf([&] { condition.Check(); }), "OutOfRangeException: FilterCondition: Please set Role properly.");
}

TEST(CheckOfACondition, LooksAtNoAlternativeButTheSelectedOne)
{
    FilterCondition condition = placed();
    condition.SetEnumFilter(EnumFilter());
    EXPECT_FALSE(condition.GetStringFilter().HasData());
    EXPECT_TRUE(condition.IsStringFilterSet());
    EXPECT_EQ(failureOf([&] { condition.Check(); }), "");
    StringFilter invalid;
    invalid.SetValidate(false);
    modeltest::fill(invalid);
    invalid.SetPatternSyntax(invalid.GetInvalidPatternSyntax());
    condition.SetStringFilter(invalid);
    EXPECT_EQ(failureOf([&] { condition.Check(); }),
              "OutOfRangeException: StringFilter: Please set PatternSyntax properly.");
}

TEST(CheckOfACondition, AsksForTheOtherMembersInTheOrderOfTheAccessors)
{
    FilterCondition condition;
    condition.SetEnumFilter(EnumFilter());
    condition.SetValidate(false);
    condition.SetName(QString());
    EXPECT_EQ(failureOf([&] { condition.Check(); }), "OutOfRangeException: FilterCondition: Please set Name properly.");
}
