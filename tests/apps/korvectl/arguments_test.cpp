#include "apps/korvectl/arguments.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

constexpr quint64 second = 1'000'000;

QString words(const char *text)
{
    return QString::fromUtf8(text);
}

struct PositionCase {
    const char *word;
    std::optional<Position> position;
};

class PositionText : public testing::TestWithParam<PositionCase>
{
};

struct MomentCase {
    const char *word;
    std::optional<Moment> moment;
};

class MomentText : public testing::TestWithParam<MomentCase>
{
};

class WrongSection : public testing::TestWithParam<const char *>
{
};

class WrongEndpoint : public testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(PositionText, IsBytesOrATime)
{
    EXPECT_EQ(Position::parsed(words(GetParam().word)), GetParam().position) << GetParam().word;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, PositionText,
    testing::Values(PositionCase{"16000", Position{16000, false}}, PositionCase{"0", Position{0, false}},
                    PositionCase{"18446744073709551615", Position{18446744073709551615u, false}},
                    PositionCase{"16kB", Position{16000, false}}, PositionCase{"1.5MB", Position{1'500'000, false}},
                    PositionCase{"0.3s", Position{300'000, true}}, PositionCase{"2min", Position{120 * second, true}},
                    PositionCase{"1h", Position{3600 * second, true}}, PositionCase{"7us", Position{7, true}},
                    PositionCase{"18446744073709551616", {}}, PositionCase{"1.5", {}}, PositionCase{"0.0001kB", {}},
                    PositionCase{"-1", {}}, PositionCase{"1e9", {}}, PositionCase{"1 day", {}}, PositionCase{"", {}},
                    PositionCase{"s", {}}, PositionCase{"99999999999TB", {}}));

TEST(SectionText, MayLeaveOutItsEnds)
{
    const auto both = Section::parsed(words("1s:3s"));
    ASSERT_TRUE(both);
    EXPECT_EQ(both->begin, (Position{second, true}));
    EXPECT_EQ(both->end, (Position{3 * second, true}));
    EXPECT_EQ(Section::parsed(words("100:"))->begin, (Position{100, false}));
    EXPECT_FALSE(Section::parsed(words("100:"))->end);
    EXPECT_FALSE(Section::parsed(words(":100"))->begin);
    EXPECT_EQ(Section::parsed(words(":")), Section());
    EXPECT_TRUE(Section::parsed(words("1000:1s"))) << "which is earlier, only the record can say";
}

TEST_P(WrongSection, IsNone)
{
    EXPECT_FALSE(Section::parsed(words(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Words, WrongSection,
                         testing::Values("", "5", "5:3", "5:5", "3s:1s", ":0", ":0s", "1:2:3", "a:b", "1-2"));

TEST_P(MomentText, IsATime)
{
    EXPECT_EQ(Moment::parsed(words(GetParam().word)), GetParam().moment) << GetParam().word;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, MomentText,
    testing::Values(MomentCase{"2026-11-21T12:32:22.629123Z", Moment{Moment::Kind::Absolute, 1795264342629123}},
                    MomentCase{"2026-11-21 12:32:22.6", Moment{Moment::Kind::Absolute, 1795264342600000}},
                    MomentCase{"1970-01-01T00:00:00", Moment{Moment::Kind::Absolute, 0}},
                    MomentCase{"1969-12-31T23:59:59.999999Z", Moment{Moment::Kind::Absolute, 18446744073709551615u}},
                    MomentCase{"1795264342629123", Moment{Moment::Kind::Absolute, 1795264342629123}},
                    MomentCase{"18446744073709551615", Moment{Moment::Kind::Absolute, 18446744073709551615u}},
                    MomentCase{"+1.5s", Moment{Moment::Kind::AfterBegin, 1'500'000}}, MomentCase{"+100", {}},
                    MomentCase{"18446744073709551616", {}}, MomentCase{"-5", {}}, MomentCase{"now", {}},
                    MomentCase{"2026-02-30T00:00:00", {}}, MomentCase{"0000-01-01T00:00:00", {}},
                    MomentCase{"2026-11-21T12:32:22+02:00", {}}, MomentCase{"2026-11-21", {}}, MomentCase{"", {}}));

TEST(MomentText, OfAClockMayBeNowButIsNotRelative)
{
    EXPECT_EQ(Moment::parsedOrNow(words("now")), (Moment{Moment::Kind::Now, 0}));
    EXPECT_EQ(Moment::parsedOrNow(words("5")), (Moment{Moment::Kind::Absolute, 5}));
    EXPECT_FALSE(Moment::parsedOrNow(words("+1s")));
}

TEST(EndpointText, IsAnAddressInDigitsAndAPort)
{
    const auto endpoint = Endpoint::parsed(words("127.0.0.1:65535"));
    ASSERT_TRUE(endpoint);
    EXPECT_EQ(endpoint->text(), words("127.0.0.1:65535"));
}

TEST_P(WrongEndpoint, IsNone)
{
    EXPECT_FALSE(Endpoint::parsed(words(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Words, WrongEndpoint,
                         testing::Values("127.0.0.1", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:", "127.0.0:1",
                                         "localhost:80", "127.0.0.1:-1", "1.2.3.4:5:6", ""));

TEST(SpeedText, IsAFactorOrWhatTheLinkTakes)
{
    EXPECT_EQ(Speed::parsed(words("0.5"))->factor, 0.5);
    EXPECT_EQ(Speed::parsed(words("2x"))->factor, 2);
    EXPECT_TRUE(Speed::parsed(words("max"))->isUnlimited);
    for (const char *const wrong : {"0", "-1", "fast", "", "1e3", "10000000"})
        EXPECT_FALSE(Speed::parsed(words(wrong))) << wrong;
}

TEST(Identifier, HasLettersThatLatin1Has)
{
    EXPECT_EQ(parsedIdentifier(words("K\xc3\xb6ln@1/%1'\"")), words("K\xc3\xb6ln@1/%1'\""));
    for (const char *const wrong : {"", "\xd0\x96", "\xf0\x9f\x93\xa1", "\xff"})
        EXPECT_FALSE(parsedIdentifier(words(wrong))) << wrong;
}
