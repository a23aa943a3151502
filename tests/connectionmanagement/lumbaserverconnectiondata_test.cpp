#include "connectionmanagement/lumbaserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/openedrole.h"
#include "tests/connectionmanagement/textvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <QSignalSpy>

#include <stdexcept>

using namespace KorveCommon;
using testing::Contains;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString local = QStringLiteral("LocalSubSystem");
const QString prefix = QStringLiteral("/Lumba/");
const QString channelPath = QStringLiteral("/LumbaTest/Channel");

using Role = OpenedRole<LumbaServerConnectionData>;

class Lumba : public LiveInstallation
{
protected:
    Lumba() { registerManager(); }
};

TEST_F(Lumba, ConnectsToTheDevicesOfItsSubsystem)
{
    Role role(prefix, alpha);
    EXPECT_EQ(role.ticMap.keys(), QStringList{alpha});
    ASSERT_EQ(role.tics(alpha).size(), 1);
    EXPECT_EQ(role.clientPath(alpha, DeviceConnection), QStringLiteral("/Lumba/SubSystems/Alpha/KORVE/Device"));
    EXPECT_EQ(role.GetCurrentSubsystem(), alpha);
    EXPECT_EQ(role.GetConfiguration()->GetCurrentSubSystem(), alpha);
    EXPECT_TRUE(role.GetConfiguration()->IsToolbar());
}

TEST_F(Lumba, CallsTheLocalSubsystemByAName)
{
    Role role(prefix, QString());
    EXPECT_EQ(role.clientPath(local, DeviceConnection),
              QStringLiteral("/Lumba/SubSystems/LocalSubSystem/KORVE/Device"));
    EXPECT_EQ(role.GetCurrentSubsystem(), local);
}

TEST_F(Lumba, HearsOfTheDevicesLater)
{
    Role role(prefix, alpha);
    QSignalSpy nodes(&role, &AbstractServerConnectionData::si_deviceNodeAdded);
    QSignalSpy changed(&role, &AbstractServerConnectionData::ConnectionChanged);
    QSignalSpy allUp(&role, &AbstractServerConnectionData::si_allTicsConnected);
    comeUp(role.tic(alpha, DeviceConnection));
    EXPECT_EQ(nodes.count() + changed.count() + allUp.count(), 0);
    ASSERT_TRUE(comesTrue([&] { return nodes.count() == 1; }));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(allUp.count(), 1);
}

TEST_F(Lumba, AddsNoTicTheSecondTime)
{
    Role role(prefix, alpha);
    role.connectTo(alpha);
    EXPECT_EQ(role.tics(alpha).size(), 1);
}

TEST_F(Lumba, FollowsTheChannelThatAValueNames)
{
    const TextValue value(channelPath, QStringLiteral("C7"));
    Role role(prefix, alpha);
    EXPECT_EQ(role.GetChannelId_ValuePath(), QString());
    EXPECT_TRUE(role.SetChannelId_ValuePath(channelPath));
    EXPECT_EQ(role.GetChannelId_ValuePath(), channelPath + QLatin1Char('/'));
    EXPECT_EQ(role.clientPath(alpha, ChannelConnection), channelPath);
    EXPECT_TRUE(role.SetChannelId_ValuePath(channelPath));
    EXPECT_EQ(role.tics(alpha).size(), 2);
    QSignalSpy up(&role, &AbstractServerConnectionData::ChannelConnectionEstablished);
    comeUp(role.tic(alpha, ChannelConnection));
    EXPECT_EQ(up.count(), 1);
}

TEST_F(Lumba, ForgetsWhatTheChannelMirroredButNotTheValueThatNamesIt)
{
    values::Tree &tree = values::Tree::Instance();
    const TextValue value(channelPath, QStringLiteral("C7"));
    {
        Role role(prefix, alpha);
        role.SetChannelId_ValuePath(channelPath);
        tree.addNode(channelPath + QStringLiteral("/Mirrored"));
    }
    EXPECT_FALSE(tree.findNode(channelPath));
    EXPECT_TRUE(tree.findValue(channelPath));
}

TEST_F(Lumba, KeepsItsPathWhenAnEmptyOneIsGiven)
{
    const TextValue value(channelPath, QStringLiteral("C7"));
    Role role(prefix, alpha);
    role.SetChannelId_ValuePath(channelPath);
    EXPECT_FALSE(role.SetChannelId_ValuePath(QString()));
    EXPECT_EQ(role.GetChannelId_ValuePath(), channelPath + QLatin1Char('/'));
    EXPECT_EQ(role.tics(alpha).size(), 2);
}

TEST_F(Lumba, FollowsNoChannelWhileTheValueNamesNone)
{
    Role role(prefix, alpha);
    EXPECT_FALSE(role.SetChannelId_ValuePath(channelPath));
    TextValue value(channelPath, QString());
    EXPECT_FALSE(role.SetChannelId_ValuePath(channelPath));
    EXPECT_EQ(role.tics(alpha).size(), 1);
    value.set(QStringLiteral("C8"));
    role.ResetVtClientConnection();
    role.connectTo(alpha); // the path was kept
    EXPECT_TRUE(role.tic(alpha, ChannelConnection));
}

TEST_F(Lumba, FollowsTheConfigurationsSubsystem)
{
    Role role(prefix, alpha);
    role.GetConfiguration()->SetCurrentSubSystem(QStringLiteral("West"));
    EXPECT_EQ(role.GetCurrentSubsystem(), QStringLiteral("West"));
    EXPECT_EQ(role.ticMap.keys(), QStringList{alpha}); // both names were equal by then
}

TEST_F(Lumba, HasNoTicWithoutACentralService)
{
    stopService();
    CapturedTraces traces(32);
    Role role(prefix, alpha);
    EXPECT_TRUE(role.ticMap.isEmpty());
    EXPECT_THAT(traces.texts(),
                Contains("AbstractServerConnectionData::ConnectToKorveManagers(): No korve managers found"));
    EXPECT_FALSE(role.SetChannelId_ValuePath(channelPath));
}

TEST_F(Lumba, EndsAtAnException)
{
    class Throwing : public LumbaServerConnectionData
    {
    public:
        using LumbaServerConnectionData::LumbaServerConnectionData;

    private:
        void CreateVTConnectTics(const QString &) override { throw std::runtime_error("no tic"); }
    };
    Throwing role(prefix, alpha); // its constructor still makes the tics of its base
    CapturedTraces traces(32);
    EXPECT_FALSE(role.ConnectToAllSubsystems());
    EXPECT_EQ(
        traces.sourceOf("LumbaServerConnectionData: Error resolving the address and interface of the KorveManagers"),
        "connectionmanagement/lumbaserverconnectiondata");
}
} // namespace
