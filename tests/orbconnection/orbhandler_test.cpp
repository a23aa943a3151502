#include "tests/orbconnection/livecentralservice.h"
#include "tests/support/outage.h"

using namespace CorbaCommon;

namespace
{
class OrbHandlerAtAService : public LiveCentralService
{
};

TEST_F(OrbHandlerAtAService, ConnectsToIt)
{
    EXPECT_TRUE(orb.ConnectToCCO(2, 250));
    EXPECT_TRUE(orb.CCOIsAvailable());
    EXPECT_FALSE(CORBA::is_nil(orb.GetCCO()));
}

TEST_F(OrbHandlerAtAService, SaysWhoIsThere)
{
    EXPECT_EQ(orb.GetSubSystemName(), QStringLiteral("Alpha"));
    EXPECT_EQ(orb.GetAllSubsystems(), QStringList{QStringLiteral("Alpha")});
    EXPECT_EQ(orb.GetSubsystemOfWorkstation(QStringLiteral("Station-A")), QStringLiteral("Alpha"));
    EXPECT_EQ(orb.GetSubsystemOfWorkstation(QStringLiteral("other")), QString());
}

TEST_F(OrbHandlerAtAService, HasNoReferenceOnceItIsGoneAndOneAgainWhenItReturns)
{
    ASSERT_TRUE(orb.CCOIsAvailable());
    killService();
    EXPECT_FALSE(orb.CCOIsAvailable());
    EXPECT_TRUE(CORBA::is_nil(orb.GetCCO()));
    startService();
    EXPECT_TRUE(orb.ConnectToCCO(2, 250));
    EXPECT_FALSE(CORBA::is_nil(orb.GetCCO()));
}

TEST_F(OrbHandlerAtAService, DoesNotWaitLongForOneThatStandsStill)
{
    ASSERT_TRUE(orb.CCOIsAvailable());
    {
        const Outage outage(service());
        EXPECT_FALSE(orb.CCOIsAvailable()); // and not the answer that comes in the end
        EXPECT_TRUE(outage.lasts());
    }
    EXPECT_TRUE(orb.ConnectToCCO(5, 100));
}

TEST_F(OrbHandlerAtAService, IsNotTakenInBySomethingElseAtThatPlace)
{
    killService();
    {
        const ServiceProcess other(QStringLiteral(TROUBLE_PROGRAM),
                                   {address(), QStringLiteral("8003"), QString(), QStringLiteral("CCO")});
        EXPECT_FALSE(orb.CCOIsAvailable());
        EXPECT_TRUE(CORBA::is_nil(orb.GetCCO()));
    }
    startService();
    EXPECT_TRUE(orb.ConnectToCCO(2, 250));
}

TEST_F(OrbHandlerAtAService, ResolvesAtTheServiceOfAWorkstation)
{
    const CCO::IF_CCO_c_var cco = direct();
    cco->Register("Some/Object", cco, 0);
    const CORBA::Object_var here = orb.ResolveInterfaceViaCCO("Some/Object", QString());
    EXPECT_TRUE(here->_is_equivalent(cco));
    const CORBA::Object_var there = orb.ResolveInterfaceViaCCO("Some/Object", address());
    EXPECT_TRUE(there->_is_equivalent(cco));
    const CORBA::Object_var nothing = orb.ResolveInterfaceViaCCO("Some/Other", address());
    EXPECT_TRUE(CORBA::is_nil(nothing));
}
} // namespace
