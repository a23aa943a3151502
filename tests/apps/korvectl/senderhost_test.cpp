#include "apps/korvectl/senderhost.h"

#include "apps/korvectl/failure.h"

#include <gtest/gtest.h>

using namespace korvectl;

TEST(ASenderHost, IsKnownByItsAddress)
{
    const SenderHost host(QStringLiteral("192.0.2.7"));
    EXPECT_TRUE(host.is(QHostAddress(QStringLiteral("192.0.2.7"))));
    EXPECT_TRUE(host.is(QHostAddress(QStringLiteral("::ffff:192.0.2.7")))) << "as a socket for both families says it";
    EXPECT_FALSE(host.is(QHostAddress(QStringLiteral("192.0.2.8"))));
    EXPECT_FALSE(host.is(QHostAddress(QHostAddress::LocalHost)));
}

TEST(ASenderHost, ThatIsThisOneMayAlsoCallFromItsUsualLoopbackAddress)
{
    const SenderHost host(QStringLiteral("127.0.0.5"));
    EXPECT_TRUE(host.is(QHostAddress(QStringLiteral("127.0.0.5"))));
    EXPECT_TRUE(host.is(QHostAddress(QHostAddress::LocalHost)));
    EXPECT_FALSE(host.is(QHostAddress(QStringLiteral("127.0.0.6"))));
}

TEST(ASenderHost, WithoutAnAddressIsNone)
{
    EXPECT_THROW(SenderHost(QStringLiteral("nowhere.invalid")), Failure);
}
