#include "connectionmanagement/receivertoserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/openedrole.h"
#include "tests/connectionmanagement/textvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <QSignalSpy>

#include <arpa/inet.h>

using namespace KorveCommon;
using testing::Contains;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString local = QStringLiteral("LocalSubSystem");
const QString prefix = QStringLiteral("/Receiver/");
const QString serverPath = QStringLiteral("/ReceiverTest/Server");
const QString channel = QStringLiteral("C1");

using Role = OpenedRole<ReceiverToServerConnectionData>;
using Base = AbstractServerConnectionData;

class Receiver : public LiveInstallation
{
protected:
    TextValue server{serverPath, address()};
};

TEST_F(Receiver, IsAttachedToTheWorkstationThatTheTreeNames)
{
    Role role(prefix, serverPath, false);
    EXPECT_EQ(role.GetSubsystemList(), QStringList{alpha});
    EXPECT_EQ(role.GetCurrentSubsystem(), alpha);
    EXPECT_EQ(role.GetConfiguration()->ConnectedKorveServer(), address());
    EXPECT_FALSE(role.GetConfiguration()->IsToolbar());
    ASSERT_EQ(role.tics(alpha).size(), 1);
    EXPECT_EQ(role.clientPath(alpha, ServerConnection), QStringLiteral("/Receiver/KORVE/Connection"));
    EXPECT_EQ(role.getConnData(alpha, ServerConnection).ipAddress, address());
}

TEST_F(Receiver, FollowsTheDevicesWhenDirect)
{
    Role role(prefix, serverPath, true);
    EXPECT_TRUE(role.GetConfiguration()->IsToolbar());
    ASSERT_EQ(role.tics(alpha).size(), 1);
    EXPECT_EQ(role.clientPath(alpha, DeviceConnection), QStringLiteral("/Receiver/KORVE/Device"));
    EXPECT_FALSE(role.SetChannelId(channel));
    EXPECT_EQ(role.tics(alpha).size(), 1);
    QSignalSpy nodes(&role, &Base::si_deviceNodeAdded);
    QSignalSpy changed(&role, &Base::ConnectionChanged);
    QSignalSpy allUp(&role, &Base::si_allTicsConnected);
    comeUp(role.tic(alpha, DeviceConnection));
    EXPECT_EQ(changed.count() + allUp.count(), 0);
    ASSERT_TRUE(comesTrue([&] { return nodes.count() == 1; }));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(allUp.count(), 1);
}

TEST_F(Receiver, BuildsDevicePathsFromItsPrefixAlone)
{
    Role role(prefix, serverPath, true);
    EXPECT_EQ(role.GetDeviceBasePath(QStringLiteral("D1")), QStringLiteral("/Receiver/KORVE/Device/D1"));
    Role atRoot(QStringLiteral("/"), serverPath, true);
    EXPECT_EQ(atRoot.GetDeviceBasePath(QStringLiteral("D1")), QStringLiteral("/KORVE/Device/D1"));
}

TEST_F(Receiver, SaysWhereItsRecorderIsEachTime)
{
    Role role(prefix, serverPath, false);
    QSignalSpy found(&role, &Base::si_korveOnWorkstation);
    role.connectTo(QStringLiteral("Other"));
    role.connectTo(alpha);
    ASSERT_EQ(found.count(), 2);
    EXPECT_EQ(found.first().at(0).toString(), alpha); // its own, not the argument
    EXPECT_EQ(found.first().at(1).toString(), address());
    EXPECT_EQ(role.tics(alpha).size(), 1);
}

TEST_F(Receiver, TakesTheHostNameForAnAddressAndKeepsItsCase)
{
    server.set(QStringLiteral("Station-X"));
    Role role(prefix, serverPath, false);
    EXPECT_EQ(role.GetConfiguration()->ConnectedKorveServer(), QStringLiteral("station-x"));
    const VtConnectData data = role.getConnData(local, ServerConnection); // nobody has that workstation
    EXPECT_EQ(data.hostName, QStringLiteral("Station-X"));
    EXPECT_EQ(data.ipAddress, QStringLiteral("Station-X"));
    EXPECT_EQ(role.GetCurrentSubsystem(), local);
}

TEST_F(Receiver, AsksForTheLocalManagerWithoutAName)
{
    registerManager();
    Role role(prefix, QStringLiteral("/ReceiverTest/None"), false);
    EXPECT_EQ(role.getConnData(local, ServerConnection).hostName, address());
}

TEST_F(Receiver, KeepsAnAddressThatWasFound)
{
    registerManager();
    const quint32 number = ntohl(inet_addr(address().toLatin1().constData()));
    manager.workstation = std::to_string(number); // another way to write the address
    Role role(prefix, QStringLiteral("/ReceiverTest/None"), false);
    EXPECT_EQ(role.getConnData(local, ServerConnection).hostName, QString::number(number));
    EXPECT_EQ(role.getConnData(local, ServerConnection).ipAddress, address());
}

TEST_F(Receiver, FollowsItsChannelAgainAfterAReset)
{
    Role role(prefix, serverPath, false);
    role.SetChannelId(channel);
    role.ResetVtClientConnection();
    role.connectTo(alpha);
    EXPECT_TRUE(role.tic(alpha, ChannelConnection));
}

TEST_F(Receiver, FollowsOneChannel)
{
    Role role(prefix, serverPath, false);
    EXPECT_TRUE(role.SetChannelId(channel));
    EXPECT_EQ(role.GetChannelId(), channel);
    EXPECT_EQ(role.clientPath(alpha, ChannelConnection), QStringLiteral("/Receiver/KORVE/Channel/C1"));
    EXPECT_TRUE(role.SetChannelId(QStringLiteral("C2")));
    EXPECT_EQ(role.tics(alpha).size(), 2);
    EXPECT_EQ(role.clientPath(alpha, ChannelConnection), QStringLiteral("/Receiver/KORVE/Channel/C2"));
}

TEST_F(Receiver, LeavesTheChannelWithoutAnId)
{
    Role role(prefix, serverPath, false);
    role.SetChannelId(channel);
    EXPECT_TRUE(role.SetChannelId(QString()));
    EXPECT_EQ(role.GetChannelId(), QString());
    ASSERT_EQ(role.tics(alpha).size(), 1);
    EXPECT_FALSE(role.tic(alpha, ChannelConnection));
}

TEST_F(Receiver, ForgetsWhatTheChannelMirroredButNotTheRest)
{
    values::Tree &tree = values::Tree::Instance();
    const QString channelNode = QStringLiteral("/Receiver/KORVE/Channel/C1/Mirrored");
    const QString connectionNode = QStringLiteral("/Receiver/KORVE/Connection/Mirrored");
    {
        Role role(prefix, serverPath, false);
        role.SetChannelId(channel);
        tree.addNode(channelNode);
        tree.addNode(connectionNode);
        role.SetChannelId(QString());
        EXPECT_FALSE(tree.findNode(channelNode));
    }
    EXPECT_TRUE(tree.findNode(connectionNode));
    tree.removeNode(QStringLiteral("/Receiver"));
}

TEST_F(Receiver, PassesOnWhatTheChannelSaysAtOnce)
{
    Role role(prefix, serverPath, false);
    role.SetChannelId(channel);
    QStringList told;
    const auto write = [&](const char *name) { return [&told, name] { told << QLatin1String(name); }; };
    QObject::connect(&role, &Base::ChannelConnectionEstablished, &role, write("up"));
    QObject::connect(&role, &Base::ChannelConnectionDisconnected, &role, write("down"));
    QObject::connect(&role, &Base::ConnectionChanged, &role, write("changed"));
    QObject::connect(&role, &Base::si_allTicsConnected, &role, write("all up"));
    comeUp(role.tic(alpha, ServerConnection));
    EXPECT_TRUE(told.isEmpty()); // nothing of this one is passed on
    comeUp(role.tic(alpha, ChannelConnection));
    goDown(role.tic(alpha, ChannelConnection));
    EXPECT_EQ(told.join(QLatin1Char(' ')), QStringLiteral("up changed all up down changed"));
    EXPECT_FALSE(role.IsChannelConnected());
    EXPECT_TRUE(role.IsServerConnected());
}

TEST_F(Receiver, MayChangeTheChannelWhenItHearsOfIt)
{
    Role role(prefix, serverPath, false);
    role.SetChannelId(channel);
    QObject::connect(&role, &Base::ChannelConnectionEstablished, &role,
                     [&] { role.SetChannelId(QStringLiteral("C2")); });
    QSignalSpy changed(&role, &Base::ConnectionChanged);
    comeUp(role.tic(alpha, ChannelConnection));
    EXPECT_EQ(changed.count(), 0); // the tic that spoke is gone
    EXPECT_EQ(role.clientPath(alpha, ChannelConnection), QStringLiteral("/Receiver/KORVE/Channel/C2"));
}

TEST_F(Receiver, WaitsForTheCentralService)
{
    stopService();
    CapturedTraces traces(32);
    Role role(prefix, serverPath, false);
    role.sl_notifyServerAvailablity(true, QString());
    const std::string noService = "CCO not available initializing ReceiverToServerConnectionData";
    EXPECT_THAT(traces.texts(), Contains(noService).Times(2));
    EXPECT_EQ(traces.sourceOf(noService), "connectionmanagement/receivertoserverconnectiondata");
    EXPECT_TRUE(role.ticMap.isEmpty());
    startService();
    role.sl_notifyServerAvailablity(true, QString());
    EXPECT_EQ(role.tics(alpha).size(), 1);
}
} // namespace
