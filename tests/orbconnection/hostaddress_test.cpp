#include "orbconnection/hostaddress.h"

#include <gtest/gtest.h>

#include <QString>

namespace
{
TEST(HostAddress, IsTheLiteralItself)
{
    QString address;
    ASSERT_TRUE(firstAddressOfHost(QStringLiteral("127.4.5.6"), address, true));
    EXPECT_EQ(address, QStringLiteral("127.4.5.6"));
}

TEST(HostAddress, OfLocalhostIsOfTheLoopback)
{
    QString address;
    ASSERT_TRUE(firstAddressOfHost(QStringLiteral("localhost"), address, true));
    EXPECT_EQ(address, QStringLiteral("127.0.0.1"));
}

TEST(HostAddress, OfAnIPv6LiteralIsFoundAlsoWhenIPv4IsPreferred)
{
    QString address;
    ASSERT_TRUE(firstAddressOfHost(QStringLiteral("::1"), address, true));
    EXPECT_EQ(address, QStringLiteral("::1"));
}

class NoHostAddress : public testing::TestWithParam<const char *>
{
};

TEST_P(NoHostAddress, LeavesTheResultAlone)
{
    QString address = QStringLiteral("before");
    EXPECT_FALSE(firstAddressOfHost(QString::fromLatin1(GetParam()), address, true));
    EXPECT_EQ(address, QStringLiteral("before"));
}

INSTANTIATE_TEST_SUITE_P(Names, NoHostAddress, testing::Values("", " ", "no such host", "300.1.1.1", "host.invalid"));
} // namespace
