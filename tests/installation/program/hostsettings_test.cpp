#include "installation/program/hostsettings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace installation;

namespace
{

class HostSettingsTest : public testing::Test
{
protected:
    HostSettingsTest()
    {
        for (const char *name : {"KORVE_ADDRESS", "KORVE_CCO", "STATE_DIRECTORY"})
            qunsetenv(name);
        line.roles = {std::begin(allRoles), std::end(allRoles)};
        line.stateFolder = folder.filePath(QStringLiteral("state"));
    }
    ~HostSettingsTest() override { qunsetenv("KORVE_ADDRESS"), qunsetenv("KORVE_CCO"), qunsetenv("STATE_DIRECTORY"); }

    HostSettings withFile(const QByteArray &text)
    {
        line.configFile = folder.filePath(QStringLiteral("host.ini"));
        QFile file(line.configFile);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        return HostSettings(line);
    }

    /// Why the settings are refused when the services of a host ask for all of them.
    static QString refusalOf(const HostSettings &settings)
    {
        try {
            settings.orb();
            settings.centralService();
            settings.recorder();
            settings.deviceId();
            settings.manager();
        } catch (const std::invalid_argument &error) {
            return QString::fromUtf8(error.what());
        }
        return QString();
    }

    QTemporaryDir folder;
    CommandLine line;
};

struct WrongCase {
    const char *name;
    const char *file;
    const char *words; ///< of the refusal
};

class WrongSetting : public HostSettingsTest, public testing::WithParamInterface<WrongCase>
{
protected:
    WrongSetting() { line.roles = {Role::Recorder}; } // one that looks for the central service elsewhere
};

} // namespace

TEST_F(HostSettingsTest, NeedNoFile)
{
    const HostSettings settings(line);
    EXPECT_EQ(settings.orb().address, QLatin1String("127.0.0.1"));
    EXPECT_EQ(settings.orb().centralService, QLatin1String("127.0.0.1"));
    EXPECT_THAT(settings.orb().ports, testing::ElementsAre(8003, 8004));
    EXPECT_EQ(settings.manager().workstationName, QLatin1String("127.0.0.1"));
    EXPECT_FALSE(settings.manager().archive);
    EXPECT_EQ(settings.deviceId(), QLatin1String("KORVE-127.0.0.1"));
    EXPECT_EQ(settings.centralService().subsystemName, "Main");
}

TEST_F(HostSettingsTest, NameTheDeviceAfterItsHost)
{
    EXPECT_EQ(withFile("[host]\naddress=127.1.2.3\npublish=192.0.2.10\n").deviceId(), QLatin1String("KORVE-192.0.2.10"));
    EXPECT_EQ(withFile("[recorder]\ndevice=KORVE7\n").deviceId(), QLatin1String("KORVE7"));
    EXPECT_EQ(withFile("[recorder]\ndevice=KORVE7\n").recorder().deviceId, QLatin1String("KORVE7"));
}

TEST_F(HostSettingsTest, TakeTheSample)
{
    line.configFile = QStringLiteral(SAMPLE_SETTINGS);
    const HostSettings settings(line);
    EXPECT_EQ(settings.orb().address, QLatin1String("127.0.0.1"));
    EXPECT_EQ(settings.centralService().subsystemName, "Main");
    EXPECT_TRUE(settings.centralService().peers.empty());
    EXPECT_EQ(settings.deviceId(), QLatin1String("KORVE-127.0.0.1"));
}

TEST_F(HostSettingsTest, PublishAndNameTheWorkstationAsTheFileSays)
{
    const HostSettings settings = withFile("[host]\naddress=127.1.2.3\npublish=192.0.2.10\n");
    EXPECT_EQ(settings.orb().address, QLatin1String("127.1.2.3"));
    EXPECT_EQ(settings.orb().publishedAddress, QLatin1String("192.0.2.10"));
    EXPECT_EQ(settings.manager().workstationName, QLatin1String("192.0.2.10"));
    EXPECT_EQ(settings.centralService().workstationName, "192.0.2.10");
}

TEST_F(HostSettingsTest, YieldToTheEnvironment)
{
    qputenv("KORVE_ADDRESS", "127.4.5.6");
    qputenv("KORVE_CCO", "127.7.8.9:1234");
    line.roles = {Role::Recorder};
    const HostSettings settings = withFile("[host]\naddress=127.1.2.3\ncco=127.3.2.1\n");
    EXPECT_EQ(settings.orb().address, QLatin1String("127.4.5.6"));
    EXPECT_EQ(settings.orb().centralService, QLatin1String("127.7.8.9:1234"));
    EXPECT_TRUE(settings.orb().ports.empty());
}

TEST_F(HostSettingsTest, UseTheirOwnCentralServiceWhenTheyRunIt)
{
    qputenv("KORVE_CCO", "127.7.8.9:1234");
    EXPECT_EQ(HostSettings(line).orb().centralService, QLatin1String("127.0.0.1"));
}

TEST_F(HostSettingsTest, FindTheFaultScriptBesideTheFile)
{
    EXPECT_TRUE(HostSettings(line).faultsFile().isEmpty());
    EXPECT_EQ(withFile("[host]\nfaults=a.faults\n").faultsFile(), folder.filePath(QStringLiteral("a.faults")));
    EXPECT_EQ(withFile("[host]\nfaults=/etc/a.faults\n").faultsFile(), QLatin1String("/etc/a.faults"));
    line.faultsFile = QStringLiteral("b.faults");
    EXPECT_EQ(withFile("[host]\nfaults=a.faults\n").faultsFile(), QLatin1String("b.faults"));
}

TEST_F(HostSettingsTest, ReadListsAndAddresses)
{
    const HostSettings settings = withFile("[cco]\npeers=\"ws2, ws3:9000\"\nsubsystems=\"West, East\"\n"
                                           "[workstations]\nWest=\"ws2, ws3\"\n[manager]\narchive=ws9:8010\n");
    const CentralObjectConfiguration configuration = settings.centralService();
    ASSERT_EQ(configuration.peers.size(), 2u);
    EXPECT_EQ(configuration.peers[0].host, "ws2");
    EXPECT_EQ(configuration.peers[0].port, 8003);
    EXPECT_EQ(configuration.peers[1].port, 9000);
    ASSERT_EQ(configuration.subsystems.size(), 2u);
    EXPECT_THAT(configuration.subsystems[0].workstations, testing::ElementsAre("ws2", "ws3"));
    EXPECT_TRUE(configuration.subsystems[1].workstations.empty());
    ASSERT_TRUE(settings.manager().archive);
    EXPECT_EQ(settings.manager().archive->port, 8010);
}

TEST_P(WrongSetting, IsNamedWithItsFileAndText)
{
    const QString refusal = refusalOf(withFile(GetParam().file));
    EXPECT_TRUE(refusal.startsWith(line.configFile + QLatin1String(": "))) << refusal.toStdString();
    EXPECT_TRUE(refusal.contains(QLatin1String(GetParam().words))) << refusal.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Settings, WrongSetting,
    testing::Values(WrongCase{"Peer", "[cco]\npeers=\"ws2:port, ws3\"\n", "[cco] peers=ws2:port is not HOST"},
                    WrongCase{"PortOfAPeer", "[cco]\npeers=ws2:70000\n", "[cco] peers=ws2:70000 is not HOST"},
                    WrongCase{"HostOfAPeer", "[cco]\npeers=ws 2:8003\n", "[cco] peers=ws 2:8003 is not HOST"},
                    WrongCase{"Subsystem", "[cco]\nsubsystem=A/B\n", "[cco] subsystem=A/B is not a name"},
                    WrongCase{"OtherSubsystem", "[cco]\nsubsystems=A/B\n", "[cco] subsystems=A/B is not a name"},
                    WrongCase{"Archive", "[manager]\narchive=ws9\n", "[manager] archive=ws9 is not HOST:PORT"},
                    WrongCase{"Device", "[recorder]\ndevice=two words\n", "[recorder] device=two words is not"},
                    WrongCase{"PathOfADevice", "[recorder]\ndevice=a/b\n", "[recorder] device=a/b is not"},
                    WrongCase{"Address", "[host]\naddress=here!\n", "[host] address=here! is not an address"},
                    WrongCase{"AddressWithPort", "[host]\naddress=ws1:80\n", "[host] address=ws1:80 is not an address"},
                    WrongCase{"Publish", "[host]\npublish=a b\n", "[host] publish=a b is not an address"},
                    WrongCase{"CentralService", "[host]\ncco=ws1:\n", "[host] cco=ws1: is not HOST"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(HostSettingsTest, NameTheVariableThatCannotBeMeant)
{
    line.roles = {Role::Recorder};
    qputenv("KORVE_CCO", "ws1:");
    EXPECT_EQ(refusalOf(HostSettings(line)), QLatin1String("the environment variable KORVE_CCO=ws1: is not HOST or HOST:PORT"));
    qputenv("KORVE_ADDRESS", "ws1:80");
    EXPECT_EQ(refusalOf(HostSettings(line)), QLatin1String("the environment variable KORVE_ADDRESS=ws1:80 is not an address"));
}

TEST_F(HostSettingsTest, NameACentralServiceThatCannotBeMeantForEachProgram)
{
    CommandLine taking = line;
    taking.import = CommandLine::Import{QStringLiteral("REC1"), {"a.wav"}};
    std::vector<CommandLine> lines{line, taking};
    for (const Role role : allRoles)
        lines.emplace_back(line).roles = {role};
    for (const char *const wrong : {"localhost:abc", ":99999", "localhost:"}) {
        qputenv("KORVE_CCO", wrong);
        const QString refusal = QStringLiteral("the environment variable KORVE_CCO=%1 is not HOST or HOST:PORT");
        for (const CommandLine &each : lines)
            EXPECT_EQ(refusalOf(HostSettings(each)), refusal.arg(QLatin1String(wrong)));
    }
}

TEST_F(HostSettingsTest, KeepTheStateWhereTheyAreTold)
{
    qputenv("STATE_DIRECTORY", "/var/lib/korve");
    line.stateFolder.clear();
    EXPECT_EQ(HostSettings(line).stateFolder(Role::Manager), QLatin1String("/var/lib/korve/manager"));
    line.stateFolder = QStringLiteral("/state");
    EXPECT_EQ(HostSettings(line).stateFolder(Role::Recorder), QLatin1String("/state/recorder"));
    line.roles = {Role::Recorder};
    EXPECT_EQ(HostSettings(line).stateFolder(Role::Recorder), QLatin1String("/state"));
}

TEST_F(HostSettingsTest, KeepTheStateOfEachRoleApartByDefault)
{
    line.roles = {Role::Recorder};
    line.stateFolder.clear();
    EXPECT_TRUE(HostSettings(line).stateFolder(Role::Recorder).endsWith(QLatin1String("/korve/recorder")));
}
