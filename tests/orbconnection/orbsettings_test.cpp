#include "orbconnection/orbsettings.h"
#include "orbconnection/vtconnectdata.h"

#include <gtest/gtest.h>

using namespace CorbaCommon;

namespace
{
struct ReferenceCase {
    const char *label;
    const char *text;
    const char *reference;
};

class CentralServiceReference : public testing::TestWithParam<ReferenceCase>
{
};

TEST_P(CentralServiceReference, IsMadeOfAnAddressOnly)
{
    EXPECT_EQ(centralServiceReference(QLatin1String(GetParam().text)).toStdString(), GetParam().reference);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CentralServiceReference,
    testing::Values(ReferenceCase{"HostAndPort", "10.0.0.7:9003", "corbaloc::1.2@10.0.0.7:9003/CCO"},
                    ReferenceCase{"HostAlone", "station-2.local", "corbaloc::1.2@station-2.local:8003/CCO"},
                    ReferenceCase{"IPv6", "[::1]:8003", "corbaloc::1.2@[::1]:8003/CCO"},
                    ReferenceCase{"Nothing", "", ""}, ReferenceCase{"NoHost", ":8003", ""},
                    ReferenceCase{"PortTooHigh", "h:65536", ""}, ReferenceCase{"PortZero", "h:0", ""},
                    ReferenceCase{"PortNegative", "h:-1", ""}, ReferenceCase{"NoNumber", "h:port", ""},
                    ReferenceCase{"AnotherKey", "h:8003/Other", ""}, ReferenceCase{"TwoAddresses", "h,:g", ""},
                    ReferenceCase{"LineEndInHost", "10.0.0.7\n:8003", ""}, ReferenceCase{"LineEndBehind", "h:8003\n", ""}),
    [](const auto &info) { return std::string(info.param.label); });

TEST(OrbSettings, ComeFromTheEnvironment)
{
    qputenv("KORVE_ADDRESS", "127.9.9.9");
    qputenv("KORVE_CCO", "10.0.0.7:8003");
    const OrbSettings settings = OrbSettings::fromEnvironment();
    qunsetenv("KORVE_ADDRESS");
    qunsetenv("KORVE_CCO");
    EXPECT_EQ(settings.address, QStringLiteral("127.9.9.9"));
    EXPECT_EQ(settings.centralService, QStringLiteral("10.0.0.7:8003"));
}

TEST(OrbSettings, StayOnTheLoopbackByThemselves)
{
    const OrbSettings settings = OrbSettings::fromEnvironment();
    EXPECT_EQ(settings.address, QStringLiteral("127.0.0.1"));
    EXPECT_EQ(settings.published(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(settings.centralService, QStringLiteral("127.0.0.1:8003"));
    EXPECT_TRUE(settings.ports.empty());
}

TEST(VtConnectData, IsFilledByAHostOrAnAddressAndAPort)
{
    EXPECT_FALSE(VtConnectData().isFilled());
    EXPECT_EQ(VtConnectData().port, 8004);
    EXPECT_TRUE((VtConnectData{QStringLiteral("h"), QString(), 1}.isFilled()));
    EXPECT_TRUE((VtConnectData{QString(), QStringLiteral("10.0.0.7"), 1}.isFilled()));
    EXPECT_FALSE((VtConnectData{QStringLiteral("h"), QStringLiteral("10.0.0.7"), 0}.isFilled()));
}
} // namespace
