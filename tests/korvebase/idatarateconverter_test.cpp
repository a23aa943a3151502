#include "korvebase/idatarateconverter.h"

#include "tests/support/virtualslot.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
using KorveCommon::IDataRateConverter;

constexpr quint64 allOnes = std::numeric_limits<quint64>::max();

/// Hardware that samples at twice the nominal rate, up to 1 MHz; 8 bytes per sample from 1 kHz on, 4 below.
class Hardware : public IDataRateConverter
{
public:
    quint64 getSampleRate(quint64 sampleRate, quint16) const override
    {
        return sampleRate <= 1'000'000 ? 2 * sampleRate : allOnes;
    }
    quint16 getSampleSize(quint64 sampleRate) const override { return sampleRate >= 1000 ? 8 : 4; }
};

TEST(DataRateConverter, MultipliesTheConvertedRateByTheSampleSize)
{
    EXPECT_EQ(Hardware().getDataRate(500, 2), 2000u);
}

TEST(DataRateConverter, AsksForTheSampleSizeThatIsNotGiven)
{
    EXPECT_EQ(Hardware().getDataRate(500), 4000u);
    EXPECT_EQ(Hardware().getDataRate(1000), 16000u);
}

TEST(DataRateConverter, HandsOnThatARateHasNoAnswer)
{
    EXPECT_EQ(Hardware().getDataRate(2'000'000, 4), allOnes);
    EXPECT_EQ(Hardware().getDataRate(2'000'000), allOnes);
}

TEST(DataRateConverter, HasItsOperationsInTheirPlaces)
{
    using I = IDataRateConverter; // its destructor has the first two places
    EXPECT_EQ(virtualSlot(static_cast<quint64 (I::*)(quint64) const>(&I::getDataRate)), 2);
    EXPECT_EQ(virtualSlot(static_cast<quint64 (I::*)(quint64, quint16) const>(&I::getDataRate)), 3);
    EXPECT_EQ(virtualSlot(&I::getSampleRate), 4);
    EXPECT_EQ(virtualSlot(&I::getSampleSize), 6);
}

TEST(DataRateConverter, CanBeCopied)
{
    const Hardware original;
    Hardware copy(original);
    copy = original;
    EXPECT_EQ(copy.getDataRate(500, 2), 2000u);
}
} // namespace
