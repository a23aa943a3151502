#include "korvebase/timestrings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace
{

constexpr qint64 momentUs = 1'600'000'000'999'999; // 2020-09-13 12:26:40.999999 UTC

/// The zone of the process while this lives, as in the variable TZ.
class Zone
{
public:
    explicit Zone(const char *name) : before(qgetenv("TZ")), wasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", name);
        tzset();
    }
    ~Zone()
    {
        wasSet ? qputenv("TZ", before) : qunsetenv("TZ");
        tzset();
    }

private:
    const QByteArray before;
    const bool wasSet;
};

TEST(TimeStrings, CountMicrosecondsAndCutTheSecond)
{
    EXPECT_EQ(UTCtoUTCString(momentUs), "2020-09-13 12:26:40");
    EXPECT_EQ(UTCtoUTCString(0), "1970-01-01 00:00:00");
}

TEST(TimeStrings, FollowTheZoneOfTheProcessOnlyWhenLocal)
{
    const Zone zone("<+0530>-05:30");
    EXPECT_EQ(UTCtoLocalString(momentUs), "2020-09-13 17:56:40");
    EXPECT_EQ(UTCtoUTCString(momentUs), "2020-09-13 12:26:40");
}

TEST(TimeStrings, AreTheSameFunctionsInTheNamespace)
{
    EXPECT_EQ(&::UTCtoLocalString, &KorveCommon::UTCtoLocalString);
    EXPECT_EQ(&::UTCtoUTCString, &KorveCommon::UTCtoUTCString);
}

} // namespace
