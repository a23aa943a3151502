#include "coresupport/datetime.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <ctime>
#include <limits>

namespace
{
constexpr quint64 sampleUs = 1'700'000'000'123'456; // 2023-11-14 22:13:20.123456 UTC

/// Puts the process two hours east of Greenwich, without summer time, for the life of a test.
class TwoHoursEast : public testing::Test
{
protected:
    TwoHoursEast() { setZone("TST-02:00"); }
    ~TwoHoursEast() override { setZone(before); }
    static void setZone(const QByteArray &zone)
    {
        if (zone.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", zone);
        tzset();
    }
    const QByteArray before = qgetenv("TZ");
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
