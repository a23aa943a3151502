#include "orbconnection/orboptions.h"

#include <gmock/gmock.h>

#include <map>

using namespace CorbaCommon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
OrbSettings settingsOf(const QString &address, const std::vector<unsigned short> &ports)
{
    OrbSettings settings;
    settings.address = address;
    settings.ports = ports;
    settings.centralService = QStringLiteral("10.0.0.1:8003");
    return settings;
}

std::multimap<std::string, std::string> optionsFor(const OrbSettings &settings, const QStringList &arguments = {})
{
    std::multimap<std::string, std::string> result;
    OrbOptions options(settings, arguments);
    for (auto *pair = options.pairs(); (*pair)[0]; ++pair)
        result.emplace((*pair)[0], (*pair)[1]);
    return result;
}

std::vector<std::string> allOf(const std::multimap<std::string, std::string> &options, const char *name)
{
    std::vector<std::string> values;
    for (auto [it, end] = options.equal_range(name); it != end; ++it)
        values.push_back(it->second);
    return values;
}

TEST(OrbOptions, BindToTheAddressAlone)
{
    const auto options = optionsFor(settingsOf(QStringLiteral("127.1.2.3"), {8003, 8004}));
    EXPECT_THAT(allOf(options, "endPoint"), ElementsAre("giop:tcp:127.1.2.3:8003", "giop:tcp:127.1.2.3:8004"));
    EXPECT_THAT(allOf(options, "endPointPublish"), IsEmpty());
}

TEST(OrbOptions, PublishAnotherAddressWhenThereIsOne)
{
    OrbSettings settings = settingsOf(QStringLiteral("0.0.0.0"), {8004});
    settings.publishedAddress = QStringLiteral("station-2");
    EXPECT_THAT(allOf(optionsFor(settings), "endPointPublish"), ElementsAre("giop:tcp:station-2:8004"));
}

TEST(OrbOptions, LetTheSystemChooseThePortOfAClient)
{
    const auto options = optionsFor(settingsOf(QStringLiteral("::1"), {}));
    EXPECT_THAT(allOf(options, "endPoint"), ElementsAre("giop:tcp:[::1]:"));
}

TEST(OrbOptions, LimitTheWaiting)
{
    OrbSettings settings = settingsOf(QStringLiteral("127.0.0.1"), {});
    settings.callTimeout = std::chrono::milliseconds(1234);
    const auto options = optionsFor(settings);
    EXPECT_THAT(allOf(options, "clientCallTimeOutPeriod"), ElementsAre("1234"));
    EXPECT_THAT(allOf(options, "clientConnectTimeOutPeriod"), ElementsAre("1234"));
    settings.callTimeout = std::chrono::milliseconds(5000);
    EXPECT_THAT(allOf(optionsFor(settings), "clientConnectTimeOutPeriod"), ElementsAre("2000"));
    settings.callTimeout = std::chrono::milliseconds(0); // without a limit
    EXPECT_THAT(allOf(optionsFor(settings), "clientConnectTimeOutPeriod"), ElementsAre("2000"));
}

TEST(OrbOptions, NameTheCentralService)
{
    const auto options = optionsFor(settingsOf(QStringLiteral("127.0.0.1"), {}));
    EXPECT_THAT(allOf(options, "InitRef"), ElementsAre("CCO=corbaloc::1.2@10.0.0.1:8003/CCO"));
}

TEST(OrbOptions, TakeNoOtherCentralServiceInsteadOfAnUnreadableOne)
{
    OrbSettings settings = settingsOf(QStringLiteral("127.0.0.1"), {});
    EXPECT_TRUE(OrbOptions(settings, {}).haveCentralService());
    settings.centralService = QStringLiteral("10.0.0.1:port");
    EXPECT_FALSE(OrbOptions(settings, {}).haveCentralService());
    EXPECT_THAT(allOf(optionsFor(settings), "InitRef"), IsEmpty());
    const QStringList given{QStringLiteral("client"), QStringLiteral("-ORBInitRef"), QStringLiteral("CCO=corbaloc::h/CCO")};
    EXPECT_TRUE(OrbOptions(settings, given).haveCentralService());
}

TEST(OrbOptions, LetArgumentsOfTheProgramPass)
{
    const QStringList arguments{QStringLiteral("korvectl"),    QStringLiteral("records"),
                                QStringLiteral("-ORBInitRef"), QStringLiteral("CCO=corbaloc::1.2@h:8003/CCO"),
                                QStringLiteral("-v"),          QStringLiteral("-ORBtraceLevel")};
    OrbOptions options(settingsOf(QStringLiteral("127.0.0.1"), {}), arguments);
    std::vector<std::string> passed(options.arguments(), options.arguments() + options.argumentCount());
    EXPECT_THAT(passed, ElementsAre("program", "-ORBInitRef", "CCO=corbaloc::1.2@h:8003/CCO", "-ORBtraceLevel"));
    EXPECT_THAT(allOf(optionsFor(settingsOf(QStringLiteral("127.0.0.1"), {}), arguments), "InitRef"), IsEmpty());
}
} // namespace
