#include "objectbase/converters.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QTimeZone>

using REPORTGENERATOR::Converters;

namespace
{

const QDate date(2026, 3, 1);
const QTime precise(23, 59, 59, 7);

TEST(DateText, IsIsoWithMillisecondsAndTimeSpec)
{
    EXPECT_EQ(Converters::ToString(QDateTime(date, precise, Qt::UTC)), "2026-03-01T23:59:59.007Z");
    EXPECT_EQ(Converters::ToString(QDateTime(date, precise, Qt::LocalTime)), "2026-03-01T23:59:59.007");
    EXPECT_EQ(Converters::ToString(QDateTime(date, precise, Qt::OffsetFromUTC, 7200)),
              "2026-03-01T23:59:59.007+02:00");
    EXPECT_EQ(Converters::ToString(QDateTime()), QString());
}

class DateRoundTrip : public testing::TestWithParam<QDateTime>
{
};

TEST_P(DateRoundTrip, KeepsInstantAndTimeSpec)
{
    const QDateTime back = Converters::ToDateTime(Converters::ToString(GetParam()));
    EXPECT_EQ(back, GetParam());
    EXPECT_EQ(back.timeSpec(), GetParam().timeSpec());
    EXPECT_EQ(back.offsetFromUtc(), GetParam().offsetFromUtc());
}

INSTANTIATE_TEST_SUITE_P(Specs, DateRoundTrip,
                         testing::Values(QDateTime(date, precise, Qt::UTC), QDateTime(date, precise, Qt::LocalTime),
                                         QDateTime(date, precise, Qt::OffsetFromUTC, -12600), QDateTime()));

TEST(DateText, OfAZoneKeepsTheInstant)
{
    const QDateTime zoned(date, precise, QTimeZone("Europe/Berlin"));
    ASSERT_TRUE(zoned.isValid());
    EXPECT_EQ(Converters::ToDateTime(Converters::ToString(zoned)), zoned);
}

TEST(DateText, ThatIsNoneGivesANullDate)
{
    EXPECT_TRUE(Converters::ToDateTime("yesterday").isNull());
    EXPECT_TRUE(Converters::ToDateTime(QString()).isNull());
}

} // namespace
