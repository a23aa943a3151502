#include "objectmodel/configuration.h"
#include "objectmodel/filtercondition.h"
#include "objectmodel/requestsparebandwidth.h"
#include "objectmodel/resourcestatus.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

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

// Passes its check, since the alternative is set, and yet has no data.
Configuration withoutData()
{
    Configuration configuration;
    configuration.SetValidate(false);
    configuration.SetIPAddress(QString());
    return configuration;
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
    FilterCondition condition;
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

// Only XML asks the objects that must have data, and the owner says so; see the table of failures.
TEST(ChoiceOutput, LeavesOutANestedChoiceWithoutData)
{
    ResourceStatus status;
    modeltest::fill(status);
    status.SetConfiguration(withoutData());
    EXPECT_EQ(failureOf([&] { status.Check(); }), "");
    EXPECT_EQ(xmlOf(status).find("<Configuration"), std::string::npos);
    RequestSpareBandwidth request;
    modeltest::fill(request);
    request.SetConfiguration(withoutData());
    const QByteArray tag = bytes("2507c45e");
    EXPECT_FALSE(modeltest::taggedPayload(request).contains(tag));
    request.SetValidate(false);
    EXPECT_TRUE(modeltest::taggedPayload(request).contains(tag));
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
}
