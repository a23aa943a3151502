#include "orbconnection/centralservicemanager.h"
#include "orbconnection/serviceregistration.h"
#include "orbconnection/vtconnectionobserver.h"
#include "orbconnection/vtserver.h"
#include "tests/orbconnection/livetreeserver.h"

namespace
{
class OrbShutdown : public LiveTreeServer
{
};

TEST_F(OrbShutdown, IsOrderlyAlsoWhileEverythingThatUsesTheOrbLives)
{
    const VtServer ownServer;
    const VtConnectionObserver connection(QStringLiteral("/K"), QStringLiteral("/C"), address(), QString(), timing());
    const CorbaCommon::CentralServiceManager watcher(QStringLiteral("A/B"), 2, 20);
    CorbaCommon::ServiceRegistration registration;
    registration.registerValues(QStringLiteral("A"), {QStringLiteral("one")});
    EXPECT_TRUE(ownServer.isServing());
    ASSERT_TRUE(comesTrue([&] { return connection.isConnected(); }));

    orb.shutdown();

    EXPECT_FALSE(orb.isRunning());
    EXPECT_FALSE(orb.CCOIsAvailable());
    EXPECT_TRUE(CORBA::is_nil(orb.GetCCO()));
    EXPECT_EQ(orb.GetSubSystemName(), QString());
    EXPECT_TRUE(comesTrue([&] { return !connection.isConnected(); }));
    orb.shutdown(); // again is nothing
}
} // namespace
