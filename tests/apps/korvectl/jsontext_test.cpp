#include "apps/korvectl/jsontext.h"

#include <gmock/gmock.h>

using korvectl::jsonTime;

TEST(JsonTime, IsAlwaysANumber)
{
    EXPECT_EQ(korvectl::jsonLine({{QStringLiteral("t"), jsonTime(1'700'000'000'000'000)}}),
              QLatin1String("{\"t\":1700000000000000}\n"));
    EXPECT_EQ(korvectl::jsonLine({{QStringLiteral("t"), jsonTime(253'402'300'800'000'000)}}),
              QLatin1String("{\"t\":253402300800000000}\n"));
    EXPECT_EQ(korvectl::jsonLine({{QStringLiteral("t"), jsonTime(static_cast<quint64>(-1))}}),
              QLatin1String("{\"t\":-1}\n"));
}
