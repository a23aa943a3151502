#include "apps/korvectl/units.h"

#include <gmock/gmock.h>

#include <limits>

namespace units = korvectl::units;

TEST(Units, ShowBytes)
{
    EXPECT_EQ(units::bytes(0), QLatin1String("0 B"));
    EXPECT_EQ(units::bytes(999), QLatin1String("999 B"));
    EXPECT_EQ(units::bytes(1000), QLatin1String("1.0 kB"));
    EXPECT_EQ(units::bytes(999'949), QLatin1String("999.9 kB"));
    EXPECT_EQ(units::bytes(999'950), QLatin1String("1.0 MB"));
    EXPECT_EQ(units::bytes(1'540'000'000), QLatin1String("1.5 GB"));
    EXPECT_EQ(units::bytes(std::numeric_limits<quint64>::max()), QLatin1String("18.4 EB"));
}

TEST(Units, ShowDurations)
{
    EXPECT_EQ(units::duration(0), QLatin1String("0:00:00.000"));
    EXPECT_EQ(units::duration(3'723'004'999), QLatin1String("1:02:03.004"));
    EXPECT_EQ(units::duration(360'000'000'000), QLatin1String("100:00:00.000"));
}

TEST(Units, ShowHowLongSomethingTook)
{
    EXPECT_EQ(units::elapsed(0), QLatin1String("0.0 ms"));
    EXPECT_EQ(units::elapsed(1'240), QLatin1String("1.2 ms"));
    EXPECT_EQ(units::elapsed(120'400), QLatin1String("120 ms"));
    EXPECT_EQ(units::elapsed(2'540'000), QLatin1String("2.5 s"));
}

TEST(Units, ShowOffsetsWithTheSignOfSomething)
{
    EXPECT_EQ(units::offset(-1.5), QLatin1String("-1.500 s"));
    EXPECT_EQ(units::offset(0.0006), QLatin1String("0.001 s"));
    EXPECT_EQ(units::offset(-0.0004), QLatin1String("0.000 s"));
}

TEST(Units, ShowInstantsInUtc)
{
    EXPECT_EQ(units::instant(0), QLatin1String("1970-01-01 00:00:00"));
    EXPECT_EQ(units::instant(1'700'000'000'999'999), QLatin1String("2023-11-14 22:13:20"));
}

TEST(Units, ShowWholeTimeStamps)
{
    EXPECT_EQ(units::exactInstant(1'795'264'342'629'123), QLatin1String("2026-11-21T12:32:22.629123Z"));
    EXPECT_EQ(units::exactInstant(1), QLatin1String("1970-01-01T00:00:00.000001Z"));
    EXPECT_EQ(units::exactInstant(253'402'300'800'000'000), QLatin1String("253402300800000000"));
}

TEST(Units, ShowInstantsBefore1970)
{
    const auto before = [](qint64 us) { return static_cast<quint64>(-us); };
    EXPECT_EQ(units::instant(before(1)), QLatin1String("1969-12-31 23:59:59"));
    EXPECT_EQ(units::exactInstant(before(1)), QLatin1String("1969-12-31T23:59:59.999999Z"));
    EXPECT_EQ(units::exactInstant(before(86'400'000'000)), QLatin1String("1969-12-31T00:00:00.000000Z"));
    EXPECT_EQ(units::exactInstant(before(62'135'596'800'000'000)), QLatin1String("0001-01-01T00:00:00.000000Z"));
    EXPECT_EQ(units::exactInstant(quint64{1} << 63), QLatin1String("-9223372036854775808"));
}

TEST(Units, ShowRates)
{
    EXPECT_EQ(units::rate(16'000, 1'000'000), QLatin1String("16.0 kB/s"));
    EXPECT_EQ(units::rate(3, 2'000'001), QLatin1String("1 B/s"));
    EXPECT_EQ(units::rate(16'000, 0), QLatin1String("-"));
}
