#include "korvebase/datarateclass.h"

#include "tests/korvebase/datatable.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using korve::channel::DataRateClass;
using KORVE_XML::KorveChannelParameter;
using DataRate = DataRateClass::DataRate;
using testing::ElementsAreArray;

constexpr auto invalid = static_cast<DataRate>(255);

TEST(DataRateClasses, AreThoseOfTheTable)
{
    std::vector<DataRate> codes;
    for (const QStringList &row : readTable("datarateclasses.txt")) {
        const auto rate = static_cast<DataRate>(row.at(0).toInt());
        codes.push_back(rate);
        bool known = false;
        EXPECT_EQ(DataRateClass::fromString(row.at(1), &known), rate) << row.at(1).toStdString();
        EXPECT_TRUE(known) << row.at(1).toStdString();
        EXPECT_EQ(DataRateClass::toString(rate), row.at(1));
        EXPECT_EQ(DataRateClass::toDisplayString(rate), KorveChannelParameter::GetGUIDataRates().at(rate));
        EXPECT_EQ(DataRateClass::toBandwidth(rate), row.at(2).toDouble()) << row.at(1).toStdString();
    }
    EXPECT_EQ(codes.size(), 16u);
    EXPECT_THAT(DataRateClass::values(), ElementsAreArray(codes));
}

TEST(DataRateClasses, HaveAMetaObject)
{
    EXPECT_STREQ(DataRateClass::staticMetaObject.className(), "korve::channel::DataRateClass");
}

TEST(DataRateClasses, AreSharedByAllCallers)
{
    EXPECT_EQ(&DataRateClass::values(), &DataRateClass::values());
}

TEST(UnknownName, GivesTheFirstClassAndSaysSo)
{
    for (const char *name : {"nonsense", "hf_20k", " HF_20k", ""}) {
        bool known = true;
        EXPECT_EQ(DataRateClass::fromString(name, &known), KorveChannelParameter::HF_20k) << name;
        EXPECT_FALSE(known) << name;
    }
}

TEST(UnknownName, IsAcceptedWithoutAFlag)
{
    EXPECT_EQ(DataRateClass::fromString("nonsense"), KorveChannelParameter::HF_20k);
    EXPECT_EQ(DataRateClass::fromString("VUHF_1M"), KorveChannelParameter::VUHF_1M);
}

TEST(InvalidCode, GivesEmptyTextsAndNoBandwidth)
{
    for (const DataRate rate : {invalid, DataRate(-1), DataRate(16), DataRate(127), DataRate(-128)}) {
        EXPECT_TRUE(DataRateClass::toString(rate).isEmpty()) << int(rate);
        EXPECT_TRUE(DataRateClass::toDisplayString(rate).isEmpty()) << int(rate);
        EXPECT_EQ(DataRateClass::toBandwidth(rate), 0.0) << int(rate);
    }
}

struct ChoiceCase {
    const char *name;
    double bandwidthHz;
    QList<DataRate> allowed;
    DataRate expected;
};

void PrintTo(const ChoiceCase &row, std::ostream *out)
{
    *out << row.name;
}

using Parameter = KorveChannelParameter;

class ClassForBandwidth : public testing::TestWithParam<ChoiceCase>
{
};

TEST_P(ClassForBandwidth, IsTheNarrowestAllowedThatCoversIt)
{
    EXPECT_EQ(DataRateClass::forBandwidth(GetParam().bandwidthHz, GetParam().allowed), GetParam().expected);
}

constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Choices, ClassForBandwidth,
    testing::Values(
        ChoiceCase{"LaterOfEqualBandwidths", 15e3, {Parameter::HF_20k, Parameter::VUHF_200k}, Parameter::VUHF_200k},
        ChoiceCase{"OrderOfTheListIsIgnored", 15e3, {Parameter::VUHF_200k, Parameter::HF_20k}, Parameter::VUHF_200k},
        ChoiceCase{"OnlyOneAllowed", 15e3, {Parameter::HF_20k}, Parameter::HF_20k},
        ChoiceCase{"WidestWhenNoneCovers", 1e10, {Parameter::HF_4M, Parameter::VUHF_1M}, Parameter::HF_4M},
        ChoiceCase{"WidestForInfinity", infinity, {Parameter::HF_4M, Parameter::VUHF_1M}, Parameter::HF_4M},
        ChoiceCase{"UpperEndBelongs", 4e6, {Parameter::HF_4M, Parameter::VUHF_10M}, Parameter::HF_4M},
        ChoiceCase{
            "UpperEndBelongsFuzzily", 4e6 * (1 + 1e-13), {Parameter::HF_4M, Parameter::VUHF_10M}, Parameter::HF_4M},
        ChoiceCase{
            "JustAboveTheUpperEnd", 4e6 * (1 + 1e-11), {Parameter::HF_4M, Parameter::VUHF_10M}, Parameter::VUHF_10M},
        ChoiceCase{"AGapBelongsToTheNextClass", 5e6, {Parameter::HF_4M, Parameter::VUHF_500M}, Parameter::VUHF_500M},
        ChoiceCase{"Repeated", 5e6, {Parameter::HF_8M, Parameter::HF_8M}, Parameter::HF_8M},
        ChoiceCase{"ZeroIsResultData", 0.0, {Parameter::HF_20k, Parameter::RESULT_DATA}, Parameter::RESULT_DATA},
        ChoiceCase{"ZeroIsCoveredByAny", 0.0, {Parameter::HF_20k}, Parameter::HF_20k},
        ChoiceCase{"ZeroIsNeverNearlyReached", 1e-300, {Parameter::HF_20k, Parameter::RESULT_DATA}, Parameter::HF_20k},
        ChoiceCase{"ResultDataAlone", 1e3, {Parameter::RESULT_DATA}, Parameter::RESULT_DATA},
        ChoiceCase{"NegativeGivesTheWidest",
                   -1.0,
                   {Parameter::HF_4M, Parameter::VUHF_125M, Parameter::HF_8M},
                   Parameter::VUHF_125M},
        ChoiceCase{"NothingAllowed", 1e3, {}, invalid},
        ChoiceCase{"OnlyInvalidAllowed", 1e3, {invalid, DataRate(16)}, invalid}),
    [](const auto &row) { return row.param.name; });
} // namespace
