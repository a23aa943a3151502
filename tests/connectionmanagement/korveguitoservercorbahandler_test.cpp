#include "tests/connectionmanagement/handlerfixture.h"

#include "korvebase/korveconfiguration.h"
#include "tests/appruntime/capturedtraces.h"

using namespace KorveCommon;
using testing::Contains;

namespace
{
const std::string alphaPath = "CCO/LocalSystem/SubSystems/Alpha/CentralServices/KorveManager/IF_KRV_c_KRV";
const std::string localPath = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/IF_KRV_c_KRV";
const std::string failed = "KorveGuiToServerCorbaHandler::ConnectToServer(): Error resolving interface with path: ";

class ServerHandler : public HandlerFixture
{
protected:
    Handler handler{alpha, station, QString()};
};

/// Goes to the workstation that is named.
class DirectHandler : public HandlerFixture
{
protected:
    Handler handler{alpha, station, address()};
};

TEST_F(ServerHandler, ConnectsWhenAllTicsAreUpAndLeavesWhenTheyFall)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(handler.IsConnected());
    upAll();
    EXPECT_TRUE(handler.IsConnected());
    EXPECT_THAT(traces.texts(), Contains("Connected to Subsystem path " + alphaPath));
    const TQ_KRV::IF_KRV_c_KRV_var reference = handler.GetKorveInterface();
    EXPECT_TRUE(reference->_is_equivalent(managerReference));
    downAll();
    EXPECT_FALSE(handler.IsConnected());
    EXPECT_TRUE(CORBA::is_nil(TQ_KRV::IF_KRV_c_KRV_var(handler.GetKorveInterface())));
}

TEST_F(ServerHandler, KnowsItsStation)
{
    EXPECT_EQ(handler.GetServerConnectionData(), station);
    EXPECT_EQ(handler.GetCurrentSubsystem(), alpha);
    EXPECT_EQ(handler.GetKorveRootPath(), QStringLiteral("/SubSystems/Alpha"));
}

TEST_F(ServerHandler, LetsGoAndComesBackWhenAsked)
{
    EXPECT_TRUE(handler.ReconnectToServer());
    EXPECT_TRUE(handler.ReconnectToServer());
    handler.Shutdown();
    EXPECT_FALSE(handler.IsConnected());
    EXPECT_TRUE(handler.ReconnectToServer());
    EXPECT_TRUE(handler.IsConnected());
}

TEST_F(ServerHandler, IsNotConnectedWithoutACurrentSubsystem)
{
    const auto nameless = std::make_shared<Station>(address());
    Handler local(QString(), nameless, QString());
    CapturedTraces traces(32);
    EXPECT_TRUE(local.ReconnectToServer());
    EXPECT_FALSE(local.IsConnected());
    EXPECT_THAT(traces.texts(), Contains("Connected to Subsystem path " + localPath));
}

TEST_F(ServerHandler, RetriesWhileTheTicsAreUpAndTracesEachFailure)
{
    unregisterManager();
    CapturedTraces traces(32);
    upAll();
    EXPECT_FALSE(handler.IsConnected());
    const auto failures = [&] {
        const auto texts = traces.texts();
        return std::count(texts.begin(), texts.end(), std::string());
    };
    EXPECT_EQ(failures(), 1);
    EXPECT_TRUE(comesTrue([&] { return failures() >= 3; }));
    registerManager();
    EXPECT_TRUE(comesTrue([&] { return handler.IsConnected(); }));
}

TEST_F(ServerHandler, StopsRetryingWhenTheTicsFall)
{
    unregisterManager();
    upAll();
    const auto other = std::make_shared<Station>(address());
    other->Initialize(alpha);
    Handler witness(alpha, other, QString()); // begins to wait later, and so retries later
    for (KorveManagerConnectionData *tic : other->tics(alpha))
        comeUp(tic);
    downAll();
    registerManager();
    EXPECT_TRUE(comesTrue([&] { return witness.IsConnected(); }));
    EXPECT_FALSE(handler.IsConnected());
}

TEST_F(ServerHandler, MayGoWhileItRetries)
{
    unregisterManager();
    auto brief = std::make_unique<Handler>(alpha, station, QString());
    upAll();
    brief.reset();
    registerManager();
    EXPECT_TRUE(comesTrue([&] { return handler.IsConnected(); }));
}

TEST_F(ServerHandler, SurvivesARestartOfTheCentralService)
{
    stopService();
    ASSERT_FALSE(orb.CCOIsAvailable());
    CapturedTraces traces(32);
    upAll();
    EXPECT_THAT(traces.texts(), Contains(failed + alphaPath));
    runService();
    registerManager();
    EXPECT_TRUE(comesTrue([&] { return handler.IsConnected(); }));
}

TEST_F(ServerHandler, StaysWhenAnotherSubsystemFalls)
{
    upAll();
    Q_EMIT station->si_allTicsDisconnected(west);
    EXPECT_TRUE(handler.IsConnected());
    Q_EMIT station->si_allTicsDisconnected(alpha);
    EXPECT_FALSE(handler.IsConnected());
}

TEST_F(ServerHandler, StaysWhenTheTicsAreDropped)
{
    upAll();
    station->ResetVtClientConnection(); // which tells nobody
    EXPECT_TRUE(handler.IsConnected());
}

TEST_F(ServerHandler, BeginsAnewWhenAnySubsystemComesUp)
{
    upAll();
    TQ_KRV::IF_KORVE_Admin_var(handler.GetKorveAdminInterface());
    station->addEmptySubsystem(west);
    Q_EMIT station->si_allTicsConnected(west);
    EXPECT_TRUE(handler.IsConnected());
    TQ_KRV::IF_KORVE_Admin_var(handler.GetKorveAdminInterface());
    EXPECT_THAT(manager.calls, Contains("getKorveAdminInterface").Times(2));
    Q_EMIT station->si_allTicsConnected(QStringLiteral("Unknown"));
    EXPECT_FALSE(handler.IsConnected());
}

TEST_F(DirectHandler, GoesToTheWorkstation)
{
    CapturedTraces traces(32);
    upAll();
    EXPECT_TRUE(handler.IsConnected());
    EXPECT_THAT(traces.texts(), Contains("Connected to Subsystem path " + localPath + " at remote workstation " +
                                         address().toStdString()));
    downAll();
    EXPECT_FALSE(handler.IsConnected());
}

TEST_F(DirectHandler, KeepsItsReferencesWhenASubsystemComesUp)
{
    upAll();
    const TQ_KRV::IF_KORVE_Admin_var admin = handler.GetKorveAdminInterface();
    Q_EMIT station->si_allTicsConnected(QStringLiteral("Unknown"));
    EXPECT_TRUE(handler.IsConnected());
    TQ_KRV::IF_KORVE_Admin_var(handler.GetKorveAdminInterface());
    EXPECT_THAT(manager.calls, Contains("getKorveAdminInterface").Times(1));
}

TEST_F(DirectHandler, GoesNowhereWhileTheTicsAreDown)
{
    handler.sl_initializeDirectConnection();
    EXPECT_FALSE(handler.IsConnected());
}

TEST_F(DirectHandler, RetriesToo)
{
    unregisterManager();
    upAll();
    EXPECT_FALSE(handler.IsConnected());
    registerManager();
    EXPECT_TRUE(comesTrue([&] { return handler.IsConnected(); }));
}

TEST_F(DirectHandler, SaysWhenNobodyIsAtTheWorkstation)
{
    Handler lost(alpha, station, neighbourAddress());
    CapturedTraces traces(32);
    EXPECT_FALSE(lost.ReconnectToServer());
    EXPECT_THAT(traces.texts(), Contains(failed + localPath));
}
} // namespace
