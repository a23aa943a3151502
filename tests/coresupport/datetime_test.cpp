#include "coresupport/datetime.h"

#include "tests/support/processtimezone.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
constexpr quint64 sampleUs = 1'700'000'000'123'456; // 2023-11-14 22:13:20.123456 UTC

/// Without summer time.
class TwoHoursEast : public testing::Test
{
    const ProcessTimeZone zone{"TST-02:00"};
};

TEST_F(TwoHoursEast, TimeStampIsPrintedInUtcUnlessToldOtherwise)
{
    EXPECT_EQ(Ulma::DateTime(sampleUs).toString(), QStringLiteral("2023-11-14 22:13:20"));
}

TEST_F(TwoHoursEast, TimeStampIsPrintedInLocalTime)
{
    Ulma::DateTime time(sampleUs);
    time.setTimeZone(Ulma::DateTime::Local_TimeZone);
    EXPECT_EQ(time.toString(), QStringLiteral("2023-11-15 00:13:20"));
}

TEST(TimeStamp, IsPrintedInTheFormatThatWasSet)
{
    Ulma::DateTime time;
    EXPECT_EQ(time.toString(), QStringLiteral("1970-01-01 00:00:00"));
    time.setTimestamp(sampleUs);
    time.setFormat(QStringLiteral("yyyy hh:mm:ss.zzz"));
    EXPECT_EQ(time.toString(), QStringLiteral("2023 22:13:20.123"));
}

TEST(TimeStamp, MayBeAsLargeAsItsType)
{
    const Ulma::DateTime time(std::numeric_limits<quint64>::max());
    EXPECT_EQ(time.toString(), QStringLiteral("586524-01-19 08:01:49"));
}
} // namespace
