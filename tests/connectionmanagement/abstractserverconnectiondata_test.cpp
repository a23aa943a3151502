#include "connectionmanagement/abstractserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/station.h"
#include "valuetreelib/ivtclient.h"

#include <QSignalSpy>

using namespace KorveCommon;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString west = QStringLiteral("West");
const std::string notFoundWest = "AbstractServerConnectionData::IsConnected subsystem not found West";

class ConnectionData : public LiveInstallation
{
protected:
    void upAll(const QString &subsystem = alpha)
    {
        for (KorveManagerConnectionData *tic : station.tics(subsystem))
            comeUp(tic);
    }

    Station station{address()};
    QSignalSpy allUp{&station, &AbstractServerConnectionData::si_allTicsConnected};
    QSignalSpy allDown{&station, &AbstractServerConnectionData::si_allTicsDisconnected};
};

TEST(ManagersPath, LeadsToTheNamedOrTheLocalSubsystem)
{
    using Data = AbstractServerConnectionData;
    EXPECT_EQ(Data::GetKorveOrbConnectionPath(QString()),
              QStringLiteral("CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/IF_KRV_c_KRV"));
    EXPECT_EQ(Data::GetKorveOrbConnectionPath(west),
              QStringLiteral("CCO/LocalSystem/SubSystems/West/CentralServices/KorveManager/IF_KRV_c_KRV"));
}

TEST_F(ConnectionData, BuildsThePathsOfDevices)
{
    station.GetConfiguration()->SetValuePathPrefix(QStringLiteral("/P"));
    EXPECT_EQ(station.GetDeviceBasePath(QStringLiteral("D1")), QStringLiteral("/P/KORVE/Device/D1"));
    station.GetConfiguration()->SetCurrentSubSystem(west);
    EXPECT_EQ(station.GetDeviceBasePath(QStringLiteral("D1")), QStringLiteral("/P/SubSystems/West/KORVE/Device/D1"));
    EXPECT_EQ(station.GetBasePath(QStringLiteral("D1")), QStringLiteral("/P/SubSystems/West/KORVE/Device/D1/Admin/"));
    EXPECT_EQ(station.GetStatusPath(QStringLiteral("D1")),
              QStringLiteral("/P/SubSystems/West/KORVE/Device/D1/Status/"));
    EXPECT_EQ(station.GetBitePath(QStringLiteral("D1")), QStringLiteral("/P/SubSystems/West/KORVE/Device/D1/Bite"));
}

TEST_F(ConnectionData, TakesNoChannelByItself)
{
    EXPECT_FALSE(station.SetChannelId(QStringLiteral("C1")));
    EXPECT_FALSE(station.SetChannelId_ValuePath(QStringLiteral("/a")));
    EXPECT_EQ(station.GetChannelId(), QString());
    EXPECT_EQ(station.GetChannelId_ValuePath(), QString());
}

TEST_F(ConnectionData, FindsTheClientOfATic)
{
    station.CreateVTConnectTics(alpha);
    IVtClient *const client = station.getVtClient(alpha, ServerConnection);
    ASSERT_TRUE(client);
    EXPECT_EQ(client->clientPath(), Station::clientPath(alpha, ServerConnection));
    EXPECT_EQ(station.getVtClient(ServerConnection), client);
}

TEST_F(ConnectionData, HasNoClientWhereThereIsNoTic)
{
    EXPECT_FALSE(station.getVtClient(ServerConnection));
    station.CreateVTConnectTics(alpha);
    CapturedTraces traces(32);
    EXPECT_FALSE(station.getVtClient(alpha, ChannelConnection));
    EXPECT_THAT(traces.texts(), IsEmpty());
    EXPECT_FALSE(station.getVtClient(west, ServerConnection));
    EXPECT_THAT(traces.texts(), Contains(notFoundWest).Times(1));
}

TEST_F(ConnectionData, KnowsTheEndsOfATic)
{
    station.CreateVTConnectTics(QStringLiteral("LocalSubSystem"));
    EXPECT_EQ(station.getClientBasePath(QString(), DeviceConnection),
              Station::clientPath(QStringLiteral("LocalSubSystem"), DeviceConnection));
    EXPECT_EQ(station.getConnData(QString(), DeviceConnection).ipAddress, address());
    EXPECT_EQ(station.getClientBasePath(QString(), ChannelConnection), QStringLiteral("/"));
    EXPECT_EQ(station.getClientBasePath(west, DeviceConnection), QStringLiteral("/"));
    EXPECT_FALSE(station.getConnData(west, DeviceConnection).isFilled());
}

TEST_F(ConnectionData, OfAnUnknownSubsystemIsNotConnectedAndNotAdded)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(station.IsConnected(west));
    EXPECT_THAT(traces.texts(), Contains(notFoundWest).Times(1));
    EXPECT_FALSE(station.containsSubsystemInMap(west));
}

TEST_F(ConnectionData, OfASubsystemWithoutTicsIsConnectedButNotToTheServer)
{
    station.addEmptySubsystem(west);
    station.GetConfiguration()->SetCurrentSubSystem(west);
    EXPECT_TRUE(station.IsConnected(west));
    EXPECT_FALSE(station.IsServerConnected());
}

TEST_F(ConnectionData, AsksTheConfigurationForTheCurrentSubsystem)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(station.IsChannelConnected());
    EXPECT_FALSE(station.IsDeviceConnected());
    EXPECT_FALSE(station.IsServerConnected());
    EXPECT_THAT(traces.texts(), ElementsAre("Check for ChannelConnected subsystem not found ",
                                                     "Check for DeviceConnected subsystem not found ",
                                                     "Check for ServerConnected subsystem not found "));
    station.CreateVTConnectTics(alpha);
    station.GetConfiguration()->SetCurrentSubSystem(alpha);
    comeUp(station.tics(alpha).at(0));
    EXPECT_TRUE(station.IsDeviceConnected());
    EXPECT_FALSE(station.IsServerConnected());
    EXPECT_FALSE(station.isConnected(DeviceConnection, west));
}

TEST_F(ConnectionData, TracesUnderItsName)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(station.IsConnected(west));
    EXPECT_EQ(traces.sourceOf(notFoundWest), "connectionmanagement/abstractserverconnectiondata");
}

TEST_F(ConnectionData, TellsWhenAllTicsAreUpAndWhenOneFalls)
{
    station.CreateVTConnectTics(alpha);
    comeUp(station.tics(alpha).at(0));
    EXPECT_EQ(allUp.count(), 0);
    comeUp(station.tics(alpha).at(1));
    ASSERT_EQ(allUp.count(), 1);
    EXPECT_EQ(allUp.last().at(0).toString(), alpha);
    EXPECT_TRUE(station.IsConnected(alpha));
    station.sl_onConnected(alpha);
    EXPECT_EQ(allUp.count(), 1);
    goDown(station.tics(alpha).at(0));
    goDown(station.tics(alpha).at(1));
    ASSERT_EQ(allDown.count(), 1);
    EXPECT_EQ(allDown.last().at(0).toString(), alpha);
    upAll();
    EXPECT_EQ(allUp.count(), 2);
}

TEST_F(ConnectionData, OverhearsATicWhoseConnectionEndsUntilTheNextChange)
{
    station.CreateVTConnectTics(alpha);
    upAll();
    Q_EMIT station.tics(alpha).at(0)->getConnection()->si_clientTerminating();
    goDown(station.tics(alpha).at(0));
    EXPECT_EQ(allDown.count(), 0);
    goDown(station.tics(alpha).at(1));
    EXPECT_EQ(allDown.count(), 1);
}

TEST_F(ConnectionData, OnlyTracesReportsOfTicsThatAreGone)
{
    CapturedTraces traces(32);
    station.sl_onConnected(west);
    EXPECT_THAT(traces.texts(), ElementsAre(notFoundWest));
    EXPECT_EQ(allUp.count() + allDown.count(), 0);
    EXPECT_FALSE(station.containsSubsystemInMap(west));
}

TEST_F(ConnectionData, RemovesTicsOfOneType)
{
    station.CreateVTConnectTics(alpha);
    upAll();
    const QPointer<KorveManagerConnectionData> device = station.tics(alpha).at(0);
    station.resetConnection(alpha, DeviceConnection);
    EXPECT_TRUE(device.isNull());
    ASSERT_EQ(station.tics(alpha).size(), 1);
    EXPECT_EQ(station.tics(alpha).first()->connectionType(), ServerConnection);
    EXPECT_EQ(allDown.count(), 0);
    station.sl_onConnected(alpha); // it counts as not connected meanwhile
    EXPECT_EQ(allUp.count(), 2);
}

TEST_F(ConnectionData, HearsNothingOfATicThatItIsRemoving)
{
    /// Has something to say to the end.
    class LoudTic : public KorveManagerConnectionData
    {
    public:
        using KorveManagerConnectionData::KorveManagerConnectionData;
        ~LoudTic() override { Q_EMIT ConnectionChanged(subsystem()); }
    };
    station.CreateVTConnectTics(alpha);
    upAll();
    auto *const tic = new LoudTic(station.tics(alpha).at(0)->getConnection(), ChannelConnection, alpha);
    QObject::connect(tic, &Station::Tic::ConnectionChanged, &station, &AbstractServerConnectionData::sl_onConnected);
    station.ticMap[alpha].append(tic);
    station.resetConnection(alpha, ChannelConnection);
    EXPECT_EQ(allUp.count(), 1); // although all that are left are up
    station.sl_onConnected(alpha);
    EXPECT_EQ(allUp.count(), 2);
}

TEST_F(ConnectionData, KeepsTheOtherTicsInTheirOrder)
{
    station.types = {DeviceConnection, ServerConnection, ChannelConnection};
    station.CreateVTConnectTics(alpha);
    station.resetConnection(alpha, DeviceConnection);
    ASSERT_EQ(station.tics(alpha).size(), 2);
    EXPECT_EQ(station.tics(alpha).at(0)->connectionType(), ServerConnection);
    EXPECT_EQ(station.tics(alpha).at(1)->connectionType(), ChannelConnection);
}

TEST_F(ConnectionData, CountsAsDownWhenItConnectsAgain)
{
    station.CreateVTConnectTics(alpha);
    upAll();
    station.types.clear();
    EXPECT_TRUE(station.ConnectToAllSubsystems());
    station.sl_onConnected(alpha);
    EXPECT_EQ(allUp.count(), 2);
}

TEST_F(ConnectionData, RemovesNothingOfAnUnknownSubsystem)
{
    station.CreateVTConnectTics(alpha);
    station.resetConnection(west, DeviceConnection);
    EXPECT_EQ(station.knownSubsystems(), QStringList{alpha});
    EXPECT_EQ(station.tics(alpha).size(), 2);
}

TEST_F(ConnectionData, DropsAllTicsSilentlyAndKeepsTheCurrentSubsystem)
{
    station.Initialize(alpha);
    upAll();
    const QPointer<KorveManagerConnectionData> tic = station.tics(alpha).at(0);
    station.ResetVtClientConnection();
    EXPECT_TRUE(tic.isNull());
    EXPECT_TRUE(station.knownSubsystems().isEmpty());
    station.sl_onConnected(alpha); // as a report that was on its way
    EXPECT_EQ(allDown.count(), 0);
    EXPECT_EQ(station.GetCurrentSubsystem(), alpha);
}

TEST_F(ConnectionData, MayBeResetByWhoHearsThatAllIsUp)
{
    station.CreateVTConnectTics(alpha);
    QObject::connect(&station, &AbstractServerConnectionData::si_allTicsConnected, &station,
                     [this] { station.ResetVtClientConnection(); });
    upAll();
    EXPECT_EQ(allUp.count(), 1);
    EXPECT_TRUE(station.knownSubsystems().isEmpty());
}
} // namespace
