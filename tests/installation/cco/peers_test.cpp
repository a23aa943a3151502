#include "tests/installation/cco/ccoprocess.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/servicefixture.h"
#include "tests/installation/cco/testorb.h"
#include "tests/support/patience.h"

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

class Peers : public ServiceFixture
{
protected:
    void startServiceWithPeers(const std::vector<std::uint16_t> &ports)
    {
        for (const std::uint16_t port : ports)
            configuration.peers.push_back({"127.0.0.1", port});
        startService();
    }

    bool waitForSubsystem(const char *name)
    {
        return waitUntil([&] { return testing::Value(textsOf(cco->GetSubSystems()), Contains(name)); });
    }

    void registerAt(const CcoProcess &peer, const char *name)
    {
        CCO::IF_CCO_c_var(peer.service())->Register(name, object, 0);
    }
};

TEST_F(Peers, AreAskedForTheNamesOfTheirSubsystem)
{
    const CcoProcess north("North", "n1");
    registerAt(north, managerName);
    startServiceWithPeers({north.port()});
    EXPECT_TRUE(knows(pathIn("North", managerName))); // also before the first probe
    ASSERT_TRUE(waitForSubsystem("North"));
    EXPECT_TRUE(knows(pathIn("north", managerName)));
    EXPECT_FALSE(knows(pathIn("North", "Other")));
    EXPECT_FALSE(knows(managerName));
}

TEST_F(Peers, AreAskedForValuesAndFolders)
{
    const CcoProcess north("North", "n1");
    startServiceWithPeers({north.port()});
    CCO::IF_CCO_c_var(north.service())->RegisterValues("A/1", sequenceOf({"x", "y"}), 0);
    EXPECT_THAT(valuesOf(pathIn("North", "A/1")), ElementsAre("x", "y"));
    EXPECT_THAT(valuesOf(pathIn("North", "A/")), ElementsAre("1"));
    EXPECT_THAT(valuesOf(pathIn("North", "B")), IsEmpty());
    EXPECT_THROW(knows(pathIn("North", "A/1")), CCO::IF_CCO_c_Naming::InvalidType);
}

TEST_F(Peers, HandOverReferencesUnchanged)
{
    const CcoProcess north("North", "n1");
    registerAt(north, managerName);
    startServiceWithPeers({north.port()});
    const CORBA::Object_var found = cco->Resolve(pathIn("North", managerName).c_str(), CCO::rtInstallation);
    const CORBA::ORB_ptr orb = TestOrb::instance().orb();
    EXPECT_STREQ(CORBA::String_var(orb->object_to_string(found)), CORBA::String_var(orb->object_to_string(object)));
}

TEST_F(Peers, AreToldApartByTheirSubsystems)
{
    const CcoProcess north("North", "n1");
    const CcoProcess east("East", "e1");
    registerAt(north, "InNorth");
    registerAt(east, "InEast");
    startServiceWithPeers({north.port(), east.port()});
    ASSERT_TRUE(waitForSubsystem("North") && waitForSubsystem("East"));
    EXPECT_TRUE(knows(pathIn("North", "InNorth")));
    EXPECT_TRUE(knows(pathIn("East", "InEast")));
    EXPECT_FALSE(knows(pathIn("East", "InNorth")));
}

TEST_F(Peers, OfOneSubsystemAreAskedInTurn)
{
    const CcoProcess first("North", "n1");
    const CcoProcess second("North", "n2");
    registerAt(second, managerName);
    startServiceWithPeers({first.port(), second.port()});
    EXPECT_TRUE(knows(pathIn("North", managerName)));
}

TEST_F(Peers, AddToSubsystemsAndWorkstations)
{
    const CcoProcess north("North", "n1");
    startServiceWithPeers({north.port()});
    ASSERT_TRUE(waitForSubsystem("North"));
    EXPECT_THAT(textsOf(cco->GetSubSystems()), ElementsAre("South", "West", "North"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("North")), ElementsAre("n1", "n1-spare"));
    EXPECT_TRUE(cco->IsRemoteCCOIndicated("North"));
    EXPECT_TRUE(cco->IsWorkstationIndicated("North", "n1"));
    EXPECT_FALSE(cco->IsWorkstationIndicated("North", "n1-spare"));
    EXPECT_THAT(textsOf(cco->GetWorkStationsFromCCOConfig("North")), IsEmpty());
}

TEST_F(Peers, ThatKnowEachOtherDoNotAskInACircle)
{
    const CcoProcess north("North", "n1", {TestOrb::instance().port()});
    startServiceWithPeers({north.port()});
    cco->Register(managerName, object, 0);
    const CCO::IF_CCO_c_var fromNorth = north.service();
    EXPECT_TRUE(waitUntil([&] {
        const CORBA::Object_var found = fromNorth->Resolve(pathIn("South", managerName).c_str(), CCO::rtInstallation);
        return !CORBA::is_nil(found);
    }));
    EXPECT_FALSE(knows(pathIn("North", managerName)));
    EXPECT_FALSE(knows(pathIn("Nowhere", managerName)));
    const CORBA::Object_var own = cco->Resolve(pathIn("North", managerName).c_str(), CCO::rtThisServiceOnly);
    EXPECT_TRUE(CORBA::is_nil(own));
}

TEST_F(Peers, ThatAreDeadCostNothing)
{
    const RefusingPort refusing;
    const MutePort mute;
    const DeafPort deaf;
    const CcoProcess north("North", "n1");
    registerAt(north, managerName);
    startServiceWithPeers({refusing.port(), mute.port(), deaf.port(), north.port()});
    EXPECT_TRUE(knows(pathIn("North", managerName))); // at the worst each is waited for once
    ASSERT_TRUE(waitForSubsystem("North"));
    Patience patience(30s, [] {});
    for (int question = 0; question < 100; ++question) // each costs a second where the silent ones are waited for
        EXPECT_FALSE(patience.isOver() || knows(pathIn("Nowhere", managerName)));
    patience.end();
    EXPECT_TRUE(knows(pathIn("North", managerName)));
}

TEST_F(Peers, ThatDieAreNoticed)
{
    CcoProcess north("North", "n1");
    registerAt(north, managerName);
    startServiceWithPeers({north.port()});
    ASSERT_TRUE(waitForSubsystem("North"));
    north.kill();
    EXPECT_FALSE(knows(pathIn("North", managerName)));
    EXPECT_TRUE(waitUntil([&] { return testing::Value(textsOf(cco->GetSubSystems()), Not(Contains("North"))); }));
    EXPECT_THROW(cco->IsRemoteCCOIndicated("North"), CCO::IF_CCO_c::NameNotAvailable);
}

TEST_F(Peers, ThatHangAreLeftOutUntilTheyAnswerAgain)
{
    CcoProcess north("North", "n1");
    registerAt(north, managerName);
    startServiceWithPeers({north.port()});
    ASSERT_TRUE(waitForSubsystem("North"));
    north.suspend();
    Patience patience(20s, [&] { north.resume(); });
    EXPECT_FALSE(knows(pathIn("North", managerName)));
    patience.end();
    EXPECT_FALSE(patience.isOver());
    north.resume();
    EXPECT_TRUE(waitUntil([&] { return knows(pathIn("North", managerName)); }));
}

TEST_F(Peers, HaveObjectsThatAreDroppedWhenTheirProcessDies)
{
    CcoProcess other("North", "n1");
    startService();
    cco->Register("Other", CCO::IF_CCO_c_var(other.service()), 0);
    ASSERT_TRUE(knows("Other"));
    other.kill();
    EXPECT_TRUE(waitUntil([&] { return !knows("Other"); }));
}

TEST_F(Peers, HaveObjectsThatAreDroppedWhenTheirProcessHangs)
{
    CcoProcess other("North", "n1");
    startService();
    cco->Register("Other", CCO::IF_CCO_c_var(other.service()), 0);
    cco->Register(managerName, object, 0);
    other.suspend();
    EXPECT_TRUE(waitUntil([&] { return !knows("Other"); }));
    EXPECT_TRUE(knows(managerName));
}

} // namespace
