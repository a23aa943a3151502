#include "korvebase/korveconfiguration.h"

#include "tests/appruntime/capturedtraces.h"

#include "coresupport/errorhandler.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using KorveCommon::KorveConfiguration;
using testing::Contains;

namespace
{

class Configuration : public testing::Test
{
protected:
    void read(const QByteArray &content)
    {
        const QString path = folder.filePath("korve.ini");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        configuration.Initialize(path);
    }

    QTemporaryDir folder;
    KorveConfiguration configuration;
};

TEST_F(Configuration, HasDefaultsWithoutAFile)
{
    configuration.Initialize(folder.filePath("missing.ini"));
    EXPECT_FALSE(configuration.IsToolbar());
    EXPECT_FALSE(configuration.IsDebuggingEnabled());
    EXPECT_FALSE(configuration.getSetRecordIdle());
    EXPECT_TRUE(configuration.GetPassiveFTPMode());
    EXPECT_EQ(configuration.getCaption(), "KORVE Manager");
    EXPECT_EQ(configuration.DefaultArchiveDirectory(), QString());
    EXPECT_EQ(configuration.KorveAddressHost(), "127.0.0.1");
    EXPECT_EQ(configuration.KorveAddressPort(), 8004);
    EXPECT_EQ(configuration.cfgPath(), folder.filePath("missing.ini"));
}

TEST_F(Configuration, TakesAllKeysFromTheFile)
{
    read("DebugApplication=true\nSetRecordIdle=yes\nPassiveFTPMode=0\nCaption=Nord\n"
         "DefaultArchive=//store/korve\nAddress=TCP:10.0.0.1:9000\nHelpFilePath=/usr/share/help.html\n");
    EXPECT_TRUE(configuration.IsDebuggingEnabled());
    EXPECT_TRUE(configuration.getSetRecordIdle());
    EXPECT_FALSE(configuration.GetPassiveFTPMode());
    EXPECT_EQ(configuration.getCaption(), "Nord");
    EXPECT_EQ(configuration.DefaultArchiveDirectory(), "\\\\store\\korve");
    EXPECT_EQ(configuration.KorveAddressHost(), "10.0.0.1");
    EXPECT_EQ(configuration.KorveAddressPort(), 9000);
    EXPECT_EQ(configuration.HelpFilePath(), "/usr/share/help.html");
}

struct AddressCase {
    const char *name;
    const char *address;
    const char *host;
    long port;
    const char *trace; ///< null: none
};

class ServerAddress : public Configuration, public testing::WithParamInterface<AddressCase>
{
};

constexpr char portTrace[] = "KorveConfiguration::ReadConfiguration -> Incorrect syntax in port number of address";
constexpr char hostTrace[] = "KorveConfiguration::ReadConfiguration -> Incorrect syntax in host number of address";

TEST_P(ServerAddress, IsTakenApart)
{
    CapturedTraces traces(32);
    read(QByteArray("Address=") + GetParam().address + '\n');
    EXPECT_EQ(configuration.KorveAddressHost(), GetParam().host);
    EXPECT_EQ(configuration.KorveAddressPort(), GetParam().port);
    for (const char *trace : {portTrace, hostTrace})
        EXPECT_EQ(testing::Value(traces.texts(), Contains(std::string(trace))), trace == GetParam().trace) << trace;
}

INSTANTIATE_TEST_SUITE_P(Forms, ServerAddress,
                         testing::Values(AddressCase{"Whole", "TCP:10.0.0.1:9000", "10.0.0.1", 9000, nullptr},
                                         AddressCase{"WithoutPort", "TCP:10.0.0.1", "127.0.0.1", 8004, portTrace},
                                         AddressCase{"WithoutHost", "TCP::9000", "127.0.0.1", 9000, hostTrace},
                                         AddressCase{"PortIsNoNumber", "TCP:h:x", "h", 0, nullptr}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(Configuration, GoesBackToTheDefaultAddress)
{
    read("Address=TCP:10.0.0.1:9000\n");
    read("Address=TCP:10.0.0.2\n");
    EXPECT_EQ(configuration.KorveAddressHost(), "127.0.0.1");
    EXPECT_EQ(configuration.KorveAddressPort(), 8004);
}

TEST_F(Configuration, ForgetsWhatOnlyAnEarlierFileSaid)
{
    read("DebugApplication=true\nSetRecordIdle=yes\nPassiveFTPMode=0\nCaption=Nord\n"
         "DefaultArchive=//store/korve\nHelpFilePath=/usr/share/help.html\n");
    read("Address=TCP:10.0.0.2:9001\n");
    EXPECT_FALSE(configuration.IsDebuggingEnabled());
    EXPECT_FALSE(configuration.getSetRecordIdle());
    EXPECT_TRUE(configuration.GetPassiveFTPMode());
    EXPECT_EQ(configuration.getCaption(), "KORVE Manager");
    EXPECT_EQ(configuration.DefaultArchiveDirectory(), QString());
    EXPECT_EQ(configuration.HelpFilePath(), QString());
    EXPECT_EQ(configuration.KorveAddressHost(), "10.0.0.2");
}

TEST_F(Configuration, ThatCannotBeReadIsTracedAndLeavesTheDefaults)
{
    CapturedTraces traces(32);
    read("Caption=Nord\nAddress=TCP:10.0.0.1:9000\n");
    configuration.Initialize(folder.path());
    EXPECT_EQ(configuration.getCaption(), "KORVE Manager");
    EXPECT_EQ(configuration.KorveAddressHost(), "127.0.0.1");
    EXPECT_THAT(traces.texts(), Contains("Error reading Korve-Configuration"));
}

TEST_F(Configuration, TracesWhatItReadWhenDebugging)
{
    CapturedTraces traces(64);
    read("HelpFilePath=/usr/share/help.html\n");
    const std::string initialized = "KorveConfiguration::Initialize" + configuration.cfgPath().toStdString();
    EXPECT_THAT(traces.texts(),
                testing::ElementsAre("Using Helpfile located at /usr/share/help.html", initialized));
    EXPECT_EQ(traces.sourceOf(initialized), "korvebase/korveconfiguration");
}

TEST_F(Configuration, BuildsTheRootPathOfASubsystem)
{
    configuration.SetValuePathPrefix("p");
    EXPECT_EQ(configuration.MakeRootPath("a"), "p/SubSystems/a");
    EXPECT_EQ(configuration.MakeRootPath(""), "p/SubSystems/");
    EXPECT_EQ(configuration.GetKorveRootPath(), "p");
    configuration.SetCurrentSubSystem("a");
    EXPECT_EQ(configuration.GetKorveRootPath(), "p/SubSystems/a");
}

TEST_F(Configuration, TellsEverySettingOfTheSubsystem)
{
    QSignalSpy changed(&configuration, &KorveConfiguration::signalSubsystemChanged);
    configuration.SetCurrentSubSystem("a");
    configuration.SetCurrentSubSystem("a");
    EXPECT_EQ(changed.count(), 2);
    EXPECT_EQ(changed.last().first().toString(), "a");
}

TEST_F(Configuration, KeepsTheConnectedServerInLowerCase)
{
    configuration.SetConnectedKorveServer("WS-Nord");
    EXPECT_EQ(configuration.ConnectedKorveServer(), "ws-nord");
}

} // namespace
