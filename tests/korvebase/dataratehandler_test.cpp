#include "korvebase/dataratehandler.h"

#include "objectmodel/supporteddatarates.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using KORVE_XML::KorveChannelParameter;
using KORVE_XML::SupportedDataRate;
using KORVE_XML::SupportedDataRates;
using KorveCommon::DataRateHandler;
using testing::ElementsAre;

constexpr auto invalid = static_cast<DataRateHandler::DataRate>(255);
constexpr auto bytes4 = SupportedDataRate::SampleSize_short;
constexpr auto bytes8 = SupportedDataRate::SampleSize_long;
constexpr quint64 allOnes = std::numeric_limits<quint64>::max();

SupportedDataRate entry(SupportedDataRate::DataRate rate, quint64 sampleRate, SupportedDataRate::SampleSize size,
                        quint64 throughput)
{
    SupportedDataRate made;
    made.SetDataRate(rate);
    made.SetSampleRate(sampleRate);
    made.SetSampleSize(size);
    made.SetThroughput(throughput);
    return made;
}

DataRateHandler::DataRateMap mapOf(std::initializer_list<SupportedDataRate> entries)
{
    DataRateHandler::DataRateMap map;
    for (const SupportedDataRate &one : entries)
        map.insert(static_cast<DataRateHandler::DataRate>(one.GetDataRate()), one);
    return map;
}

SupportedDataRates listOf(std::initializer_list<SupportedDataRate> entries)
{
    SupportedDataRates list;
    for (const SupportedDataRate &one : entries)
        list.AppendSupportedDataRate(one);
    return list;
}

struct ConversionCase {
    const char *name;
    quint64 sampleRate;
    quint16 sampleSize;
    SupportedDataRate::SampleSize entrySize;
    quint64 converted;
};

void PrintTo(const ConversionCase &row, std::ostream *out)
{
    *out << row.name;
}

class SampleRate : public testing::TestWithParam<ConversionCase>
{
};

// The conversion itself is private: it is the least sample rate of an entry that still supports the rate.
TEST_P(SampleRate, IsBroughtToTheSampleSizeOfTheEntry)
{
    const ConversionCase &row = GetParam();
    const auto supports = [&](quint64 offered) {
        return DataRateHandler(mapOf({entry(SupportedDataRate::HF_4M, offered, row.entrySize, 1)}))
            .supportsSampleRate(row.sampleRate, row.sampleSize);
    };
    EXPECT_TRUE(supports(row.converted));
    EXPECT_FALSE(row.converted > 0 && supports(row.converted - 1));
}

INSTANTIATE_TEST_SUITE_P(
    Conversions, SampleRate,
    testing::Values(ConversionCase{"Equal4", 1000, 4, bytes4, 1000}, ConversionCase{"Equal8", 1000, 8, bytes8, 1000},
                    ConversionCase{"EqualIsExactBeyondDoubles", allOnes - 1, 4, bytes4, allOnes - 1},
                    ConversionCase{"From8To4", 1000, 8, bytes4, 2000}, ConversionCase{"From4To8", 1000, 4, bytes8, 500},
                    ConversionCase{"From4To8IsCut", 1001, 4, bytes8, 500},
                    ConversionCase{"From4To8IsExactBeyondDoubles", allOnes, 4, bytes8, allOnes >> 1},
                    ConversionCase{"From2To4", 1000, 2, bytes4, 500}, ConversionCase{"From2To8", 1000, 2, bytes8, 250},
                    ConversionCase{"From3To4IsCut", 1001, 3, bytes4, 750},
                    ConversionCase{"From16To4", 1000, 16, bytes4, 4000},
                    ConversionCase{"BeyondIntegersIsTheGreatest", allOnes, 65535, bytes4, allOnes},
                    ConversionCase{"NoSize", 1000, 0, bytes4, 0}),
    [](const auto &row) { return row.param.name; });

TEST(SampleSize, CountsAs8BytesUnlessItsCodeIs0)
{
    SupportedDataRate unsized;
    unsized.SetSampleRate(500);
    ASSERT_EQ(unsized.GetSampleSize(), -1);
    const DataRateHandler handler(DataRateHandler::DataRateMap{{KorveChannelParameter::HF_4M, unsized}});
    EXPECT_TRUE(handler.supportsSampleRate(1000, 4));
    EXPECT_FALSE(handler.supportsSampleRate(1002, 4));
}

class Recorder : public testing::Test
{
protected:
    const DataRateHandler handler{mapOf({
        entry(SupportedDataRate::HF_20k, 25'000, bytes8, 200'000),
        entry(SupportedDataRate::HF_4M, 5'000'000, bytes4, 20'000'000),
        entry(SupportedDataRate::VUHF_10M, 12'000'000, bytes4, 48'000'000),
        entry(SupportedDataRate::VUHF_1M, 5'000'000, bytes4, 20'000'000),
    })};
};

TEST_F(Recorder, SupportsWhatOneOfItsClassesSupports)
{
    EXPECT_TRUE(handler.supportsSampleRate(12'000'000, 4));
    EXPECT_FALSE(handler.supportsSampleRate(12'000'001, 4));
    EXPECT_TRUE(handler.supportsThroughput(48'000'000));
    EXPECT_FALSE(handler.supportsThroughput(48'000'001));
}

TEST_F(Recorder, TakesTheClassWithTheLeastSurplusForASampleRate)
{
    EXPECT_EQ(handler.dataRateClassForSampleRate(50'000, 4), KorveChannelParameter::HF_20k);
    EXPECT_EQ(handler.dataRateClassForSampleRate(50'002, 4), KorveChannelParameter::HF_4M) << "the lower code of two";
    EXPECT_EQ(handler.dataRateClassForSampleRate(2'500'001, 8), KorveChannelParameter::VUHF_10M);
    EXPECT_EQ(handler.dataRateClassForSampleRate(12'000'001, 4), invalid);
}

TEST_F(Recorder, TakesTheClassWithTheLeastSufficientThroughput)
{
    EXPECT_EQ(handler.dataRateClassForThroughput(0), KorveChannelParameter::HF_20k);
    EXPECT_EQ(handler.dataRateClassForThroughput(200'000), KorveChannelParameter::HF_20k);
    EXPECT_EQ(handler.dataRateClassForThroughput(200'001), KorveChannelParameter::HF_4M) << "the lower code of two";
    EXPECT_EQ(handler.dataRateClassForThroughput(48'000'000), KorveChannelParameter::VUHF_10M);
    EXPECT_EQ(handler.dataRateClassForThroughput(48'000'001), invalid);
}

TEST(GreatestSurplus, StillCounts)
{
    const DataRateHandler handler(mapOf({entry(SupportedDataRate::HF_4M, allOnes, bytes4, allOnes)}));
    EXPECT_EQ(handler.dataRateClassForSampleRate(0, 4), KorveChannelParameter::HF_4M);
    EXPECT_EQ(handler.dataRateClassForThroughput(0), KorveChannelParameter::HF_4M);
}

TEST(HighestClass, IsMeasuredAt4BytesPerSampleOrByThroughput)
{
    const DataRateHandler handler(
        mapOf({entry(SupportedDataRate::HF_4M, 1500, bytes8, 7), entry(SupportedDataRate::VUHF_10M, 1000, bytes4, 9)}));
    EXPECT_EQ(handler.highestDataRateClass(invalid, true), KorveChannelParameter::VUHF_10M) << "750 against 1000";
    EXPECT_EQ(handler.highestDataRateClass(invalid, false), KorveChannelParameter::VUHF_10M);
}

TEST(HighestClass, IsThatWithTheLowerCodeOfTwo)
{
    const DataRateHandler handler(
        mapOf({entry(SupportedDataRate::VUHF_10M, 1000, bytes4, 9), entry(SupportedDataRate::HF_4M, 2000, bytes8, 9)}));
    EXPECT_EQ(handler.highestDataRateClass(invalid, true), KorveChannelParameter::HF_4M);
    EXPECT_EQ(handler.highestDataRateClass(invalid, false), KorveChannelParameter::HF_4M);
}

TEST(HighestClass, IsTheFallbackIfNothingIsAboveZero)
{
    constexpr auto fallback = KorveChannelParameter::VUHF_300k;
    EXPECT_EQ(DataRateHandler().highestDataRateClass(fallback, true), fallback);
    const DataRateHandler zeros(mapOf({entry(SupportedDataRate::HF_4M, 0, bytes4, 0)}));
    EXPECT_EQ(zeros.highestDataRateClass(fallback, true), fallback);
    EXPECT_EQ(zeros.highestDataRateClass(fallback, false), fallback);
}

TEST(RecorderWithoutClasses, SupportsNothing)
{
    const DataRateHandler handler;
    EXPECT_FALSE(handler.supportsSampleRate(0, 4));
    EXPECT_FALSE(handler.supportsThroughput(0));
    EXPECT_EQ(handler.dataRateClassForSampleRate(0, 4), invalid);
    EXPECT_EQ(handler.dataRateClassForThroughput(0), invalid);
}

TEST(SupportedClasses, AreKeptByClass)
{
    const DataRateHandler handler(
        listOf({entry(SupportedDataRate::VUHF_10M, 1, bytes4, 10), entry(SupportedDataRate::HF_4M, 2, bytes4, 20),
                entry(SupportedDataRate::VUHF_10M, 3, bytes4, 30)}));
    EXPECT_THAT(handler.supportedDataRates().keys(),
                ElementsAre(KorveChannelParameter::HF_4M, KorveChannelParameter::VUHF_10M));
    EXPECT_EQ(handler.supportedDataRates().value(KorveChannelParameter::VUHF_10M).GetThroughput(), 30u)
        << "the later of two entries counts";
}

TEST(SupportedClasses, AreReplacedByAListOrAMap)
{
    DataRateHandler handler(mapOf({entry(SupportedDataRate::HF_4M, 1, bytes4, 10)}));
    handler.setSupportedDataRates(listOf({entry(SupportedDataRate::HF_8M, 1, bytes4, 10)}));
    EXPECT_THAT(handler.supportedDataRates().keys(), ElementsAre(KorveChannelParameter::HF_8M));
    handler.setSupportedDataRates(mapOf({entry(SupportedDataRate::HF_12M, 1, bytes4, 10)}));
    EXPECT_THAT(handler.supportedDataRates().keys(), ElementsAre(KorveChannelParameter::HF_12M));
}

TEST(SupportedClasses, AreGoneWhenTheNewListIsNotEvenSet)
{
    DataRateHandler handler(mapOf({entry(SupportedDataRate::HF_4M, 1, bytes4, 10)}));
    handler.setSupportedDataRates(SupportedDataRates());
    EXPECT_TRUE(handler.supportedDataRates().isEmpty());
}

TEST(Handler, IsAQObjectWithAParent)
{
    QObject parent;
    const auto *handler = new DataRateHandler(&parent);
    EXPECT_EQ(handler->parent(), &parent);
    EXPECT_STREQ(handler->metaObject()->className(), "KorveCommon::DataRateHandler");
}
} // namespace
