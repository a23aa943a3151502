#include "connectionmanagement/abstractserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/station.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <stdexcept>

using namespace KorveCommon;
using testing::Contains;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString local = QStringLiteral("LocalSubSystem");

class Initialization : public LiveInstallation
{
protected:
    Station station{address()};
};

TEST_F(Initialization, IsNotMadeByConstruction)
{
    EXPECT_TRUE(station.created.isEmpty());
    EXPECT_TRUE(station.knownSubsystems().isEmpty());
    EXPECT_EQ(station.GetCurrentSubsystem(), QString());
}

TEST_F(Initialization, ReadsTheConfigurationThatIsNamed)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("station.ini"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Caption=Recorders\n");
    file.close();
    Station configured(address(), path);
    EXPECT_EQ(configured.GetConfiguration()->getCaption(), QStringLiteral("Recorders"));
}

TEST_F(Initialization, FollowsTheManagersRegistration)
{
    announceTree();
    ASSERT_TRUE(comesTrue([this] { return !station.created.isEmpty(); }));
    EXPECT_EQ(station.created, QStringList{alpha});
    EXPECT_EQ(station.tics(alpha).size(), 2);
    EXPECT_EQ(station.GetCurrentSubsystem(), alpha);
    EXPECT_EQ(station.GetConfiguration()->GetCurrentSubSystem(), alpha);
}

TEST_F(Initialization, LeavesTheTicsAloneTheSecondTime)
{
    station.sl_notifyServerAvailablity(true, QString());
    const auto tics = station.tics(alpha);
    station.sl_notifyServerAvailablity(true, QString());
    EXPECT_EQ(station.tics(alpha), tics);
    EXPECT_EQ(station.created, QStringList{alpha});
}

TEST_F(Initialization, IsNotMadeWhenTheManagerGoes)
{
    station.sl_notifyServerAvailablity(false, QString());
    EXPECT_TRUE(station.created.isEmpty());
}

TEST_F(Initialization, ConnectsToEverySubsystem)
{
    startNeighbour();
    station.GetConfiguration()->SetCurrentSubSystem(QStringLiteral("West"));
    CapturedTraces traces(32);
    station.Initialize();
    EXPECT_THAT(station.created, testing::UnorderedElementsAre(alpha, QStringLiteral("West")));
    EXPECT_EQ(station.GetCurrentSubsystem(), QStringLiteral("West"));
    EXPECT_THAT(traces.texts(), Contains("AbstractServerConnectionData: try to connect to subsystem Alpha"));
}

TEST_F(Initialization, WorksWithoutAnyNameConfigured)
{
    stopService(); // so that no subsystem is known
    EXPECT_EQ(station.GetSubsystemList(), QStringList{local});
    station.Initialize();
    EXPECT_EQ(station.created, QStringList{local});
    EXPECT_EQ(station.GetCurrentSubsystem(), local);
}

TEST_F(Initialization, ComparesNamesWithoutCase)
{
    station.Initialize();
    station.GetConfiguration()->SetCurrentSubSystem(QStringLiteral("aLPHA"));
    station.Initialize();
    EXPECT_EQ(station.created.size(), 1);
    EXPECT_EQ(station.GetCurrentSubsystem(), alpha);
}

TEST_F(Initialization, IsMadeAgainWhenTheConfigurationHasAnotherSubsystem)
{
    station.Initialize();
    const QPointer<KorveManagerConnectionData> before = station.tics(alpha).first();
    station.GetConfiguration()->SetCurrentSubSystem(QStringLiteral("West"));
    station.Initialize();
    EXPECT_TRUE(before.isNull());
    EXPECT_EQ(station.created.size(), 2);
    EXPECT_EQ(station.GetCurrentSubsystem(), QStringLiteral("West"));
}

TEST_F(Initialization, OfANamedSubsystemTellsTheConfiguration)
{
    QSignalSpy changed(station.GetConfiguration().get(), &KorveConfiguration::signalSubsystemChanged);
    station.Initialize(QStringLiteral("West"));
    EXPECT_EQ(station.GetCurrentSubsystem(), QStringLiteral("West"));
    EXPECT_EQ(station.GetConfiguration()->GetCurrentSubSystem(), QStringLiteral("West"));
    EXPECT_EQ(changed.count(), 1);
    station.Initialize(QStringLiteral("West"));
    EXPECT_EQ(station.created.size(), 1);
}

TEST_F(Initialization, SaysWhenThereIsNoManager)
{
    /// Makes no tics.
    class Alone : public Station
    {
    public:
        using Station::Station;
        void CreateVTConnectTics(const QString &) override {}
    };
    Alone alone(address());
    CapturedTraces traces(32);
    alone.Initialize();
    EXPECT_THAT(traces.texts(),
                Contains("AbstractServerConnectionData::ConnectToKorveManagers(): No korve managers found"));
    EXPECT_EQ(alone.GetCurrentSubsystem(), QString());
}

TEST_F(Initialization, EndsAtAnException)
{
    class Throwing : public Station
    {
    public:
        using Station::Station;
        void CreateVTConnectTics(const QString &) override { throw std::runtime_error("no tic"); }
    };
    Throwing throwing(address());
    CapturedTraces traces(32);
    EXPECT_FALSE(throwing.ConnectToAllSubsystems());
    EXPECT_THAT(traces.texts(),
                Contains("AbstractServerConnectionData: Error resolving the address and interface of the "
                         "KorveManagers"));
    EXPECT_TRUE(station.ConnectToAllSubsystems());
}
} // namespace
