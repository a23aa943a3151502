#include "connectionmanagement/hmiserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/openedrole.h"
#include "valuetreelib/tree.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace KorveCommon;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString local = QStringLiteral("LocalSubSystem");

class DisplayStation : public LiveInstallation
{
protected:
    DisplayStation() { registerManager(); }

    OpenedRole<HMIServerConnectionData> role{QString()};
};

TEST_F(DisplayStation, HasATicToTheDevicesAndOneToTheServer)
{
    role.GetConfiguration()->SetValuePathPrefix(QStringLiteral("/Prefix")); // is ignored
    role.connectTo(alpha);
    ASSERT_EQ(role.tics(alpha).size(), 2);
    EXPECT_EQ(role.clientPath(alpha, DeviceConnection), QStringLiteral("/SubSystems/Alpha/KORVE/Device"));
    EXPECT_EQ(role.clientPath(alpha, ServerConnection), QStringLiteral("/SubSystems/Alpha/KORVE/Command"));
    EXPECT_EQ(role.getConnData(alpha, ServerConnection).hostName, address());
    EXPECT_EQ(role.getConnData(alpha, DeviceConnection).port, 8004);
    EXPECT_EQ(role.tics(alpha).first()->subsystemListEntry(), QStringList{alpha});
}

TEST_F(DisplayStation, CallsTheLocalSubsystemByAName)
{
    role.connectTo(QString());
    ASSERT_EQ(role.tics(local).size(), 2);
    EXPECT_EQ(role.clientPath(QString(), DeviceConnection), QStringLiteral("/SubSystems/LocalSubSystem/KORVE/Device"));
}

TEST_F(DisplayStation, AsksForTheLocalSubsystemWithoutAName)
{
    manager.trouble = [this] {
        if (manager.calls.size() == 1)
            throw CORBA::TRANSIENT(); // so that the path is traced
    };
    CapturedTraces traces(32);
    role.connectTo(QString());
    EXPECT_THAT(traces.texts(), testing::Contains(testing::HasSubstr("path: CCO/LocalSystem/LocalSubSystem/")));
    EXPECT_EQ(role.tics(local).size(), 2);
}

TEST_F(DisplayStation, HasAValueToAskEachTicForReconnection)
{
    role.connectTo(alpha);
    for (const ConnectionType type : {DeviceConnection, ServerConnection}) {
        const QString path = role.clientPath(alpha, type) + QStringLiteral("/ReregisterCorba");
        EXPECT_TRUE(values::Tree::Instance().findValue(path)) << path.toStdString();
    }
}

TEST_F(DisplayStation, HasNoTicWhileNoManagerCanBeFound)
{
    stopService();
    role.connectTo(alpha);
    EXPECT_TRUE(role.ticMap.isEmpty());
}

TEST_F(DisplayStation, AddsNoTicTheSecondTime)
{
    role.connectTo(alpha);
    const auto tics = role.tics(alpha);
    role.connectTo(alpha);
    EXPECT_EQ(role.tics(alpha), tics);
    EXPECT_EQ(tics.first()->subsystemListEntry(), (QStringList{alpha, alpha}));
}

TEST_F(DisplayStation, NotesSubsystemsThatShareAHost)
{
    role.connectTo(alpha);
    role.connectTo(local); // the same manager
    role.connectTo(local);
    ASSERT_EQ(role.tics(local).size(), 2);
    for (KorveManagerConnectionData *tic : role.tics(local)) {
        ASSERT_EQ(tic->subsystemListEntry().size(), 2);
        EXPECT_EQ(tic->subsystemListEntry().first(), local);
        EXPECT_TRUE(role.ticMap.contains(tic->subsystemListEntry().last()));
    }
}

TEST_F(DisplayStation, TellsHostsApartWhenItNotesSharedOnes)
{
    startNeighbour();
    registerManager(neighbourAddress());
    const QString west = QStringLiteral("West");
    for (int time = 0; time < 2; ++time) {
        manager.workstation = address().toStdString();
        role.connectTo(alpha);
        manager.workstation = neighbourAddress().toStdString();
        role.connectTo(west);
    }
    EXPECT_EQ(role.tic(alpha, ServerConnection)->subsystemListEntry(), (QStringList{alpha, alpha}));
    EXPECT_EQ(role.tic(west, ServerConnection)->subsystemListEntry(), (QStringList{west, west}));
}

TEST_F(DisplayStation, HandlesDevicesLaterAndTheServerAtOnce)
{
    role.connectTo(alpha);
    QStringList told;
    const auto write = [&](const char *name) { return [&told, name] { told << QLatin1String(name); }; };
    using Base = AbstractServerConnectionData;
    QObject::connect(&role, &Base::ConnectionChanged, &role, write("changed"));
    QObject::connect(&role, &Base::si_deviceNodeAdded, &role, write("nodes"));
    QObject::connect(&role, &Base::si_allTicsConnected, &role, write("all up"));
    comeUp(role.tic(alpha, ServerConnection));
    EXPECT_EQ(told, QStringList{QStringLiteral("changed")});
    told.clear();
    comeUp(role.tic(alpha, DeviceConnection));
    EXPECT_TRUE(told.isEmpty());
    ASSERT_TRUE(comesTrue([&] { return told.size() >= 3; }));
    EXPECT_EQ(told, (QStringList{QStringLiteral("changed"), QStringLiteral("all up"), QStringLiteral("nodes")}));
}

TEST_F(DisplayStation, IgnoresWhatItsFormerTicsHadToSay)
{
    role.connectTo(alpha);
    QSignalSpy changed(&role, &AbstractServerConnectionData::ConnectionChanged);
    QSignalSpy nodes(&role, &AbstractServerConnectionData::si_deviceNodeAdded);
    comeUp(role.tic(alpha, DeviceConnection));
    role.ResetVtClientConnection();
    CapturedTraces traces(32);
    QCoreApplication::sendPostedEvents(&role);
    EXPECT_EQ(changed.count() + nodes.count(), 0);
    EXPECT_FALSE(traces.contain("IsConnected subsystem not found"));
    EXPECT_TRUE(role.ticMap.isEmpty());
}

TEST_F(DisplayStation, HearsOfATicMadeMeanwhileWhatThatSaysItself)
{
    role.connectTo(alpha);
    QSignalSpy changed(&role, &AbstractServerConnectionData::ConnectionChanged);
    comeUp(role.tic(alpha, DeviceConnection));
    role.ResetVtClientConnection();
    role.connectTo(alpha);
    QCoreApplication::sendPostedEvents(&role);
    EXPECT_EQ(changed.count(), 0);
    comeUp(role.tic(alpha, DeviceConnection));
    QCoreApplication::sendPostedEvents(&role);
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(DisplayStation, KeepsWhatItsTicsMirrored)
{
    values::Tree &tree = values::Tree::Instance();
    const QStringList mirrored{QStringLiteral("/SubSystems/Alpha/KORVE/Device/D1"),
                               QStringLiteral("/SubSystems/Alpha/KORVE/Command/C1")};
    role.connectTo(alpha);
    for (const QString &path : mirrored)
        tree.addNode(path);
    role.ResetVtClientConnection();
    for (const QString &path : mirrored)
        EXPECT_TRUE(tree.findNode(path)) << path.toStdString();
    tree.removeNode(QStringLiteral("/SubSystems"));
}

TEST_F(DisplayStation, FollowsTheConfigurationsSubsystem)
{
    role.GetConfiguration()->SetCurrentSubSystem(alpha);
    EXPECT_EQ(role.GetCurrentSubsystem(), alpha);
    EXPECT_TRUE(role.ticMap.isEmpty()); // both names are equal by now
}

TEST_F(DisplayStation, ReadsItsConfiguration)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("hmi.ini")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Caption=Station\n");
    file.close();
    HMIServerConnectionData configured(file.fileName());
    EXPECT_EQ(configured.GetConfiguration()->getCaption(), QStringLiteral("Station"));
}
} // namespace
