#include "objectmodel/configuration.h"
#include "objectmodel/filtercondition.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <functional>
#include <type_traits>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::failureOf;
using modeltest::hex;
using modeltest::xmlOf;

namespace
{

Configuration addressed(const QString &address)
{
    Configuration configuration;
    configuration.SetIPAddress(address);
    return configuration;
}

Configuration both()
{
    Configuration configuration = addressed("10.0.0.7");
    configuration.SetChannel("C1");
    return configuration;
}

// What every condition needs beside its alternative.
FilterCondition placed()
{
    FilterCondition condition;
    condition.SetColumn(1);
    condition.SetRole(2);
    return condition;
}

} // namespace

static_assert(std::is_same_v<std::underlying_type_t<Configuration::ChoiceConfiguration>, signed char>);

TEST(Choice, IsInvalidUntilAnAlternativeIsSet)
{
    const Configuration configuration;
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
    EXPECT_FALSE(configuration.IsValidChoiceConfiguration(configuration.GetChoiceConfiguration()));
    EXPECT_FALSE(configuration.HasData());
    EXPECT_EQ(FilterCondition().GetChoiceFilterCondition(), -1);
}

TEST(Choice, KnowsItsAlternatives)
{
    EXPECT_EQ(Configuration::GetChoiceConfigurations(), (QStringList{"IPAddress", "Channel"}));
    const Configuration configuration;
    EXPECT_EQ(configuration.NameToChoiceConfiguration("Channel"), Configuration::ChoiceConfiguration_Channel);
    EXPECT_EQ(configuration.ChoiceConfigurationToName(Configuration::ChoiceConfiguration_IPAddress).toStdString(),
              "IPAddress");
    EXPECT_TRUE(configuration.IsValidChoiceConfiguration(Configuration::ChoiceConfiguration_Channel));
    EXPECT_FALSE(configuration.IsValidChoiceConfiguration(static_cast<Configuration::ChoiceConfiguration>(2)));
    EXPECT_EQ(FilterCondition::ChoiceFilterCondition_BooleanFilter, 3);
}

TEST(Choice, IsMadeByTheSetterAndTheLastOneWins)
{
    Configuration configuration = both();
    EXPECT_EQ(configuration.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_Channel);
    configuration.SetIPAddress("10.0.0.8");
    EXPECT_EQ(configuration.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_IPAddress);
    EXPECT_TRUE(configuration.IsIPAddressSet() && configuration.IsChannelSet());
}

TEST(Choice, IsNotMadeByASetterThatRefuses)
{
    Configuration configuration = addressed("10.0.0.7");
    EXPECT_EQ(failureOf([&] { configuration.SetChannel(QString()); }),
              "OutOfRangeException: Configuration: Please set Channel properly (origin: Setter).");
    EXPECT_EQ(configuration.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_IPAddress);
}

TEST(Choice, IsNotMadeByTheGetterOfAnAlternative)
{
    FilterCondition condition = placed();
    condition.GetStringFilter().SetPattern("x");
    EXPECT_TRUE(condition.IsStringFilterSet());
    EXPECT_EQ(condition.GetChoiceFilterCondition(), -1);
}

TEST(Choice, IsForgottenByResetAndByItsOwnReset)
{
    Configuration configuration = addressed("10.0.0.7");
    configuration.ResetChoiceConfiguration();
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
    EXPECT_TRUE(configuration.IsIPAddressSet());
    EXPECT_FALSE(configuration.HasData());
    configuration = both();
    configuration.Reset();
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
    EXPECT_FALSE(configuration.AnyData());
}

TEST(Choice, IsCopiedButNotCompared)
{
    const Configuration channelLast = both();
    Configuration addressLast = both();
    addressLast.SetIPAddress("10.0.0.7");
    EXPECT_EQ(Configuration(channelLast).GetChoiceConfiguration(), Configuration::ChoiceConfiguration_Channel);
    EXPECT_NE(addressLast.GetChoiceConfiguration(), channelLast.GetChoiceConfiguration());
    EXPECT_TRUE(addressLast == channelLast);
}

TEST(Choice, AsksOnlyTheSelectedAlternativeForData)
{
    EXPECT_TRUE(addressed("10.0.0.7").HasData());
    EXPECT_TRUE(addressed("").HasData());
    Configuration configuration;
    configuration.SetChannel("C1");
    EXPECT_TRUE(configuration.HasData());
    configuration.SetValidate(false);
    configuration.SetIPAddress(QString());
    EXPECT_FALSE(configuration.HasData());
}

TEST(InitChoice, ResetsAndDoesNotStoreItsArgument)
{
    Configuration configuration = both();
    configuration.InitChoice(Configuration::ChoiceConfiguration_Channel);
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
    EXPECT_FALSE(configuration.IsIPAddressSet() || configuration.IsChannelSet());
    configuration.SetIPAddress("a");
    EXPECT_EQ(configuration.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_IPAddress);
}

TEST(InitChoice, InitializesTheObject)
{
    FilterCondition condition;
    condition.InitChoice(FilterCondition::ChoiceFilterCondition_EnumFilter);
    EXPECT_TRUE(condition.IsInitialized());
    EXPECT_EQ(condition.GetChoiceFilterCondition(), -1);
}

TEST(InitChoice, RefusesAnInvalidSelectorWhateverTheFlag)
{
    for (const bool validate : {true, false}) {
        Configuration configuration;
        configuration.SetValidate(validate);
        for (const int selector : {-1, 2})
            EXPECT_EQ(
                failureOf([&] { configuration.InitChoice(static_cast<Configuration::ChoiceConfiguration>(selector)); }),
                "OutOfRangeException: Invalid enum value set in 'Configuration'.");
        FilterCondition condition;
        condition.SetValidate(validate);
        EXPECT_EQ(failureOf([&] { condition.InitChoice(static_cast<FilterCondition::ChoiceFilterCondition>(4)); }),
                  "OutOfRangeException: Invalid enum value set in 'FilterCondition'.");
    }
}

TEST(InitChoice, ResetsBeforeItRefuses)
{
    Configuration configuration = both();
    EXPECT_NE(failureOf([&] { configuration.InitChoice(static_cast<Configuration::ChoiceConfiguration>(2)); }), "");
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
    EXPECT_FALSE(configuration.AnyData());
}

TEST(ChoiceOutput, HoldsOnlyTheSelectedAlternative)
{
    const Configuration configuration = both();
    EXPECT_EQ(xmlOf(configuration), "<Configuration><Channel>C1</Channel></Configuration>");
    EXPECT_EQ(hex(modeltest::taggedPayload(configuration)), hex(bytes("c12e8046 00000006 00000002 4331")));
    EXPECT_EQ(hex(modeltest::compactForm(configuration)), hex(bytes("02 00000004 0043 0031")));
    Configuration other = both();
    other.SetIPAddress("A");
    EXPECT_EQ(xmlOf(other), "<Configuration><IPAddress>A</IPAddress></Configuration>");
    EXPECT_EQ(hex(modeltest::taggedPayload(other)), hex(bytes("6b2b0aa7 00000005 00000001 41")));
    EXPECT_EQ(hex(modeltest::compactForm(other)), hex(bytes("01 00000002 0041")));
}

TEST(ChoiceOutput, HoldsNoAlternativeWhenNoneIsSelectedAndValidationIsOff)
{
    Configuration configuration = both();
    configuration.SetValidate(false);
    configuration.ResetChoiceConfiguration();
    EXPECT_EQ(xmlOf(configuration), "<Configuration/>");
    EXPECT_EQ(hex(modeltest::taggedForm(configuration, 1)), hex(bytes("00000001 00000000")));
    EXPECT_EQ(hex(modeltest::compactForm(configuration)), hex(bytes("00")));
}

TEST(ChoiceOutput, LeavesTheObjectAsItIs)
{
    const Configuration configuration = both();
    xmlOf(configuration);
    modeltest::taggedPayload(configuration);
    modeltest::compactForm(configuration);
    EXPECT_TRUE(configuration.IsIPAddressSet() && configuration.IsChannelSet());
}

TEST(ChoiceInput, OfBothAlternativesSelectsTheLastOne)
{
    Configuration fromXml;
    EXPECT_TRUE(
        fromXml.SetXmlString("<Configuration><Channel>C</Channel><IPAddress>A</IPAddress></Configuration>", false));
    EXPECT_EQ(fromXml.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_IPAddress);
    EXPECT_TRUE(fromXml.IsIPAddressSet() && fromXml.IsChannelSet());
    Configuration fromTagged;
    modeltest::readTagged(fromTagged, bytes("6b2b0aa7 00000005 00000001 41 c12e8046 00000005 00000001 43"));
    EXPECT_EQ(fromTagged.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_Channel);
    EXPECT_TRUE(fromTagged.IsIPAddressSet() && fromTagged.IsChannelSet());
    EXPECT_EQ(fromTagged.GetIPAddress().toStdString(), "A");
}

TEST(ChoiceInput, OfTheCompactFormSelectsTheAlternativeThatIsThere)
{
    Configuration configuration = addressed("old");
    modeltest::readCompact(configuration, bytes("02 00000002 0043"));
    EXPECT_EQ(configuration.GetChoiceConfiguration(), Configuration::ChoiceConfiguration_Channel);
    EXPECT_EQ(configuration.GetChannel().toStdString(), "C");
    EXPECT_FALSE(configuration.IsIPAddressSet());
    modeltest::readCompact(configuration, bytes("00"));
    EXPECT_EQ(configuration.GetChoiceConfiguration(), -1);
}

namespace
{

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

TEST(CheckOfAChoice, ReportsWhatIsMissing)
{
    EXPECT_EQ(
        failureOf([] { Configuration().Check(); }),
        "IncompleteDefinitionException: Configuration:Check failed. The mandatory choice ChoiceConfiguration is not "
        "initialized");
    EXPECT_EQ(failureOf([] {
                  Configuration configuration = both();
                  configuration.ResetChannel();
                  configuration.Check();
              }),
              "IncompleteDefinitionException: Configuration:Check failed. m_channel is not set");
    EXPECT_EQ(failureOf([] {
                  Configuration configuration = addressed("A");
                  configuration.ResetIPAddress();
                  configuration.Check();
              }),
              "IncompleteDefinitionException: Configuration:Check failed. m_iPAddress is not set");
    EXPECT_EQ(
        failureOf([] { placed().Check(); }),
        "IncompleteDefinitionException: FilterCondition:Check failed. The mandatory choice ChoiceFilterCondition is "
        "not initialized");
}

TEST(CheckOfAChoice, ComesBeforeTheOtherMembers)
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

TEST(CheckOfAChoice, AsksForTheOtherMembersInTheOrderOfTheAccessors)
{
    FilterCondition condition;
    condition.SetEnumFilter(EnumFilter());
    condition.SetValidate(false);
    condition.SetName(QString());
    EXPECT_EQ(failureOf([&] { condition.Check(); }), "OutOfRangeException: FilterCondition: Please set Name properly.");
}
