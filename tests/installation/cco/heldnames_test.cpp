#include "tests/appruntime/capturedtraces.h"
#include "tests/installation/cco/ccoprocess.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/servicefixture.h"
#include "tests/installation/cco/testorb.h"

using namespace installation;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

const char *const refusedNames = "CentralObjectService/Refused/";

/// Names whose service looks for dead holders only when somebody else wants to have one.
class HeldName : public ServiceFixture
{
protected:
    HeldName()
    {
        configuration.timing.probeInterval = 1h;
        startService();
    }
    ~HeldName() override { other->retire(); }

    void giveTo(const CallbackOwner &holder) { cco->Register(managerName, CCO::Callback_var(holder->reference()), 0); }
    bool isHeldBy(CORBA::Object_ptr holder)
    {
        const CORBA::Object_var found = cco->Resolve(managerName, CCO::rtInstallation);
        return !CORBA::is_nil(found) && found->_is_equivalent(holder);
    }
    /// Where it is listed that somebody in this process is refused it.
    static std::string listedRefusal()
    {
        return std::string(managerName) + "/127.0.0.1:" + std::to_string(TestOrb::instance().port());
    }

    const CallbackOwner other{RecordingCallback::make()};
    const CCO::Callback_var otherObject{other->reference()};
};

TEST_F(HeldName, IsRefusedToAnotherWhileItsHolderLives)
{
    giveTo(owner);
    EXPECT_THROW(giveTo(other), CORBA::NO_PERMISSION);
    EXPECT_THROW(cco->RegisterValues(managerName, sequenceOf({"127.0.0.1", "8004"}), 0), CORBA::NO_PERMISSION);
    EXPECT_THROW(cco->RegisterValues(managerName, sequenceOf({"mere", "values", "here"}), 0), CORBA::NO_PERMISSION);
    EXPECT_TRUE(isHeldBy(object));
}

TEST_F(HeldName, TracesEachChangeOfHands)
{
    const MutePort next;
    std::optional<MutePort> first(std::in_place);
    const CapturedTraces traces(32);
    const auto addressOf = [](const MutePort &port) { return "the address 127.0.0.1:" + std::to_string(port.port()); };
    const std::string holders[] = {addressOf(*first), addressOf(next)};
    const auto put = [&](const MutePort &port) {
        cco->RegisterValues("A", sequenceOf({"127.0.0.1", std::to_string(port.port())}), 0);
    };
    put(*first);
    put(*first);
    EXPECT_THROW(put(next), CORBA::NO_PERMISSION);
    EXPECT_THROW(put(next), CORBA::NO_PERMISSION);
    first.reset();
    put(next);
    EXPECT_THAT(traces.texts(), ElementsAre("A is held by " + holders[0],
                                            "A is refused to " + holders[1] + ": it is held by " + holders[0],
                                            "A goes from " + holders[0] + " to " + holders[1]));
}

TEST_F(HeldName, MayBeRepeatedByItsHolder)
{
    giveTo(owner);
    EXPECT_NO_THROW(giveTo(owner));
    EXPECT_TRUE(isHeldBy(object));
}

TEST_F(HeldName, GoesToAnotherAtOnceWhenItsObjectIsGone)
{
    const CallbackOwner mortal(RecordingCallback::make());
    giveTo(mortal);
    mortal->retire();
    giveTo(other);
    EXPECT_TRUE(isHeldBy(otherObject));
}

TEST_F(HeldName, GoesToAnotherAtOnceWhenThePortOfItsHolderRefuses)
{
    CcoProcess process("North", "n1");
    cco->Register(managerName, CCO::IF_CCO_c_var(process.service()), 0);
    EXPECT_THROW(giveTo(other), CORBA::NO_PERMISSION);
    process.kill();
    giveTo(other);
    EXPECT_TRUE(isHeldBy(otherObject));
}

TEST_F(HeldName, StaysWithAHolderThatStandsStill)
{
    CcoProcess process("North", "n1");
    const CCO::IF_CCO_c_var holder = process.service();
    cco->Register(managerName, holder, 0);
    process.suspend();
    EXPECT_THROW(giveTo(other), CORBA::NO_PERMISSION);
    process.resume();
    EXPECT_TRUE(isHeldBy(holder));
}

TEST_F(HeldName, IsThatOfAnAddressToo)
{
    std::optional<MutePort> server(std::in_place);
    const MutePort otherServer;
    cco->RegisterValues("A", sequenceOf({"127.0.0.1", std::to_string(server->port())}), 0);
    const CCO::seqString next = sequenceOf({"127.0.0.1", std::to_string(otherServer.port())});
    EXPECT_THROW(cco->RegisterValues("A", next, 0), CORBA::NO_PERMISSION);
    server.reset();
    cco->RegisterValues("A", next, 0);
    EXPECT_THAT(valuesOf("A"), ElementsAre("127.0.0.1", std::to_string(otherServer.port())));
}

TEST_F(HeldName, OfATreeIsThatOfTheManager)
{
    const char *const treeName = "KorveManager/VTConnect";
    const MutePort server; // as of a process that stands still
    const CCO::seqString elsewhere = sequenceOf({"127.0.0.2", "8004"});
    cco->RegisterValues(treeName, sequenceOf({"127.0.0.1", std::to_string(server.port())}), 0);
    EXPECT_THROW(cco->RegisterValues(treeName, elsewhere, 0), CORBA::NO_PERMISSION);
    const CallbackOwner mortal(RecordingCallback::make());
    giveTo(mortal);
    EXPECT_THROW(cco->RegisterValues(treeName, elsewhere, 0), CORBA::NO_PERMISSION);
    mortal->retire();
    const CORBA::Object_var next =
        TestOrb::instance().orb()->string_to_object("corbaloc::1.2@127.0.0.2:8004/KorveManager");
    cco->Register(managerName, next, 0);
    EXPECT_THROW(cco->RegisterValues(treeName, sequenceOf({"127.0.0.3", "8004"}), 0), CORBA::NO_PERMISSION);
    cco->RegisterValues(treeName, elsewhere, 0);
    EXPECT_THAT(valuesOf(treeName), ElementsAre("127.0.0.2", "8004"));
}

TEST_F(HeldName, ListsWhomItIsRefused)
{
    const CallbackOwner mortal(RecordingCallback::make());
    giveTo(mortal);
    EXPECT_THROW(giveTo(other), CORBA::NO_PERMISSION);
    EXPECT_THAT(valuesOf(refusedNames), ElementsAre(listedRefusal()));
    EXPECT_THAT(valuesOf(refusedNames + listedRefusal()),
                ElementsAre("127.0.0.1", std::to_string(TestOrb::instance().port())));
    mortal->retire();
    giveTo(other);
    EXPECT_THAT(valuesOf(refusedNames), IsEmpty());
}

TEST_F(HeldName, IsNotListedAsRefusedToWhoeverGetsItWhenItIsFree)
{
    giveTo(owner);
    EXPECT_THROW(giveTo(other), CORBA::NO_PERMISSION);
    const CORBA::Object_var given = cco->Unregister(managerName, 0);
    giveTo(other);
    EXPECT_THAT(valuesOf(refusedNames), IsEmpty());
}

TEST_F(HeldName, IsListedAsRefusedByTheServiceAlone)
{
    EXPECT_THROW(cco->RegisterValues((refusedNames + listedRefusal()).c_str(), sequenceOf({"mine"}), 0),
                 CORBA::BAD_PARAM);
}

TEST_F(ServiceFixture, ForgetsWhoIsRefusedANameWhenThatOneIsGone)
{
    startService();
    cco->Register(managerName, object, 0);
    CcoProcess process("North", "n1");
    EXPECT_THROW(cco->Register(managerName, CCO::IF_CCO_c_var(process.service()), 0), CORBA::NO_PERMISSION);
    EXPECT_FALSE(valuesOf(refusedNames).empty());
    process.kill();
    EXPECT_TRUE(waitUntil([&] { return valuesOf(refusedNames).empty(); }));
}

TEST_F(ServiceFixture, GivesTheNameOfASilentHolderToAnotherInTheEnd)
{
    startService();
    CcoProcess process("North", "n1");
    const CCO::IF_CCO_c_var holder = process.service();
    cco->Register(managerName, holder, 0);
    process.suspend();
    EXPECT_TRUE(waitUntil([&] {
        try {
            cco->Register(managerName, object, 0);
            return true;
        } catch (const CORBA::NO_PERMISSION &) {
            return false;
        }
    }));
    process.resume();
}

} // namespace
