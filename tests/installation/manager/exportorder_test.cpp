#include "installation/manager/exportorder.h"

#include <gmock/gmock.h>

using installation::streamAddressIn;

namespace
{

struct AddressCase {
    const char *text;
    const char *host;
    quint16 port;
    quint64 offset;
};

class StreamAddress : public testing::TestWithParam<AddressCase>
{
};

class NoStreamAddress : public testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(StreamAddress, IsTakenApart)
{
    const auto address = streamAddressIn(QString::fromUtf8(GetParam().text));
    ASSERT_TRUE(address);
    EXPECT_EQ(address->host, QLatin1String(GetParam().host));
    EXPECT_EQ(address->port, GetParam().port);
    EXPECT_EQ(address->offset, GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(Forms, StreamAddress,
                         testing::Values(AddressCase{"10.0.0.1:4000", "10.0.0.1", 4000, 0},
                                         AddressCase{"host.example:1/0", "host.example", 1, 0},
                                         AddressCase{"h:65535/18446744073709551615", "h", 65535, ~quint64(0)},
                                         AddressCase{"[::1]:80/7", "[::1]", 80, 7}));

TEST_P(NoStreamAddress, IsRefused)
{
    EXPECT_FALSE(streamAddressIn(QString::fromUtf8(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Forms, NoStreamAddress,
                         testing::Values("", "host", "host:", ":80", "host:0", "host:65536", "host:80/", "host:80/-1",
                                         "host:80/x", "host:80/18446744073709551616", "ho st:80", "a@host:80",
                                         "host:80/1/2", "host:80?x", "::1:80", "host:80\n"));
