#include "korvebase/timestrings.h"

#include "tests/support/processtimezone.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
using namespace KorveCommon; // a client that does so has no second function of the same name

constexpr qint64 sampleUs = 1'700'000'000'987'654; // 2023-11-14 22:13:20.987654 UTC

struct Zone {
    const char *name;
    const char *rule;
    const char *local; ///< the sample there
};

void PrintTo(const Zone &zone, std::ostream *out)
{
    *out << zone.rule;
}

class TimeText : public testing::TestWithParam<Zone>
{
    const ProcessTimeZone zone{GetParam().rule};
};

INSTANTIATE_TEST_SUITE_P(Zones, TimeText,
                         testing::Values(Zone{"Greenwich", "TST0", "2023-11-14 22:13:20"},
                                         Zone{"TwoHoursEast", "TST-02:00", "2023-11-15 00:13:20"},
                                         Zone{"FiveAndAHalfHoursWest", "TST05:30", "2023-11-14 16:43:20"}),
                         [](const auto &info) { return info.param.name; });

TEST_P(TimeText, IsInUtcWhereverTheProcessIs)
{
    EXPECT_EQ(UTCtoUTCString(sampleUs).toStdString(), "2023-11-14 22:13:20");
}

TEST_P(TimeText, IsInTheTimeOfTheProcess)
{
    EXPECT_EQ(UTCtoLocalString(sampleUs).toStdString(), GetParam().local);
}

TEST_P(TimeText, CutsPartsOfASecond)
{
    EXPECT_EQ(UTCtoUTCString(0).toStdString(), "1970-01-01 00:00:00");
    EXPECT_EQ(UTCtoUTCString(999'999).toStdString(), "1970-01-01 00:00:00");
    EXPECT_EQ(UTCtoUTCString(1'000'000).toStdString(), "1970-01-01 00:00:01");
    EXPECT_EQ(UTCtoUTCString(std::numeric_limits<qint64>::max()).toStdString(), "294247-01-10 04:00:54");
}

TEST(TimeTextFunctions, AreTheSameWithAndWithoutTheNamespace)
{
    EXPECT_EQ(&::UTCtoLocalString, &KorveCommon::UTCtoLocalString);
    EXPECT_EQ(&::UTCtoUTCString, &KorveCommon::UTCtoUTCString);
}
} // namespace
