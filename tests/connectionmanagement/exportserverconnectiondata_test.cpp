#include "connectionmanagement/exportserverconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/openedrole.h"
#include "valuetreelib/ivtclient.h"

#include <QCoreApplication>
#include <QSignalSpy>

using namespace KorveCommon;
using testing::Contains;

namespace
{
const QString alpha = QStringLiteral("Alpha");
const QString prefix = QStringLiteral("/Export/");
const std::string attempt = "ExportServerConnectionData - CreateVTConnectTics for subsystem Alpha";

using Role = OpenedRole<ExportServerConnectionData>;

class ExportClient : public LiveInstallation
{
protected:
    ExportClient() { registerManager(); }

    CapturedTraces traces{32};
};

TEST_F(ExportClient, CutsTheSlashOfItsPrefixUnlessThatIsAll)
{
    EXPECT_EQ(Role(prefix, alpha).getClientRootPath(), QStringLiteral("/Export"));
    EXPECT_EQ(Role(prefix, alpha).getClientBasePath(), QStringLiteral("/Export/KORVE/Command/Export"));
    EXPECT_EQ(Role(QStringLiteral("/"), alpha).getClientRootPath(), QStringLiteral("/"));
    EXPECT_EQ(Role(QStringLiteral("p"), alpha).getClientBasePath(), QStringLiteral("p/KORVE/Command/Export"));
}

TEST_F(ExportClient, IsForTheNamedSubsystem)
{
    Role role(prefix, QStringLiteral("West"));
    EXPECT_EQ(role.GetConfiguration()->GetCurrentSubSystem(), QStringLiteral("West"));
    EXPECT_THAT(traces.texts(), Contains("ExportServerConnectionData:: created for subsystem West"));
}

TEST_F(ExportClient, IsForTheLocalSubsystemWithoutAName)
{
    Role role(prefix, QString());
    EXPECT_EQ(role.GetConfiguration()->GetCurrentSubSystem(), alpha);
    EXPECT_THAT(traces.texts(), Contains("ExportServerConnectionData: created for local subsystem Alpha"));
}

TEST_F(ExportClient, SaysWhenItDoesNotKnowTheLocalSubsystem)
{
    stopService();
    Role role(prefix, QString());
    EXPECT_EQ(role.GetConfiguration()->GetCurrentSubSystem(), QString());
    EXPECT_THAT(traces.texts(), Contains("ExportServerConnectionData::unable to get local subSystem Name. "
                                         "No connection to KorveServer possible."));
}

TEST_F(ExportClient, HasOneTicToTheExportCommands)
{
    Role role(prefix, alpha);
    EXPECT_FALSE(role.getVtClient());
    role.connectTo(alpha);
    ASSERT_EQ(role.tics(alpha).size(), 1);
    EXPECT_EQ(role.clientPath(alpha, ServerConnection), role.getClientBasePath());
    EXPECT_EQ(role.getVtClient()->clientPath(), role.getClientBasePath());
    EXPECT_EQ(role.getVtClient(), role.getVtClient(alpha, ServerConnection));
    role.connectTo(alpha);
    EXPECT_EQ(role.tics(alpha).size(), 1);
    EXPECT_THAT(traces.texts(), Contains(attempt).Times(2));
    EXPECT_THAT(traces.texts(), Contains(attempt + " FAILED(1)").Times(1));
    EXPECT_EQ(traces.sourceOf(attempt), "connectionmanagement/exportserverconnectiondata");
}

TEST_F(ExportClient, HasNoTicToAnotherSubsystem)
{
    Role role(prefix, alpha);
    role.connectTo(QStringLiteral("West"));
    role.connectTo(QString());
    EXPECT_TRUE(role.ticMap.isEmpty());
}

TEST_F(ExportClient, HasTheClientOfTheCurrentSubsystemOnly)
{
    Role role(prefix, alpha);
    role.connectTo(alpha);
    role.GetConfiguration()->SetCurrentSubSystem(QStringLiteral("West"));
    EXPECT_FALSE(role.getVtClient());
}

TEST_F(ExportClient, SaysWhenItFindsNoManager)
{
    Role role(prefix, alpha);
    stopService();
    role.connectTo(alpha);
    EXPECT_TRUE(role.ticMap.isEmpty());
    EXPECT_THAT(traces.texts(), Contains(attempt + " FAILED(2)"));
}

TEST_F(ExportClient, HearsOfItsTicLaterAndPassesNothingOn)
{
    Role role(prefix, alpha);
    role.connectTo(alpha);
    QSignalSpy allUp(&role, &AbstractServerConnectionData::si_allTicsConnected);
    QSignalSpy changed(&role, &AbstractServerConnectionData::ConnectionChanged);
    comeUp(role.tic(alpha, ServerConnection));
    EXPECT_EQ(allUp.count(), 0);
    EXPECT_TRUE(comesTrue([&] { return allUp.count() == 1; }));
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(ExportClient, HearsNothingOfATicThatIsGone)
{
    Role role(prefix, alpha);
    role.connectTo(alpha);
    comeUp(role.tic(alpha, ServerConnection));
    role.ResetVtClientConnection();
    QCoreApplication::sendPostedEvents(&role);
    EXPECT_FALSE(traces.contain("IsConnected subsystem not found"));
}
} // namespace
