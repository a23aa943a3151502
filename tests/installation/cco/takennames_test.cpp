#include "installation/cco/registrar.h"
#include "tests/installation/cco/ccoprocess.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/servicefixture.h"

#include "coresupport/trace.h"

using namespace installation;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

const char *const name = "KorveManager/IF_KRV_c_KRV";

/// A central object service, and two who call it from different addresses.
class TakenName : public testing::Test
{
protected:
    ~TakenName() override { owner->retire(); }

    void giveTo(CORBA::Object_ptr holder) { service->Register(name, holder, 0); }
    bool isHeld() { return !CORBA::is_nil(CORBA::Object_var(service->Resolve(name, CCO::rtInstallation))); }
    static void takeAway(CCO::IF_CCO_c_ptr by) { CORBA::release(by->Unregister(name, 0)); }

    const CcoProcess process{"South", "ws1"};
    const StrangersWay way{process.port()};
    const CCO::IF_CCO_c_var service{process.service(10s)};
    const CCO::IF_CCO_c_var stranger{CcoProcess::serviceAt(way.port())};
    const CallbackOwner owner{RecordingCallback::make()};
    const CCO::Callback_var object{owner->reference()};
};

TEST_F(TakenName, IsNotTakenFromALivingHolderByAStranger)
{
    giveTo(object);
    EXPECT_THROW(takeAway(stranger), CORBA::NO_PERMISSION);
    EXPECT_TRUE(isHeld());
    takeAway(service);
    EXPECT_FALSE(isHeld());
}

TEST_F(TakenName, IsNotTheStrangersWhoRepeatsIt)
{
    giveTo(object);
    stranger->Register(name, object, 0);
    EXPECT_THROW(takeAway(stranger), CORBA::NO_PERMISSION);
    EXPECT_TRUE(isHeld());
}

TEST_F(TakenName, IsNotTakenFromAHolderThatStandsStill)
{
    CcoProcess silent("North", "n1");
    giveTo(CCO::IF_CCO_c_var(silent.service()));
    silent.suspend();
    EXPECT_THROW(takeAway(stranger), CORBA::NO_PERMISSION);
    silent.resume();
    EXPECT_TRUE(isHeld());
}

TEST_F(TakenName, IsNotTakenFromALivingAddressByAStranger)
{
    std::optional<MutePort> server(std::in_place);
    service->RegisterValues("A", sequenceOf({"127.0.0.1", std::to_string(server->port())}), 0);
    EXPECT_THROW(stranger->UnregisterValues("A", 0), CORBA::NO_PERMISSION);
    EXPECT_EQ(textsOf(service->ResolveValues("A", CCO::rtInstallation)).size(), 2u);
    server.reset();
    EXPECT_NO_THROW(stranger->UnregisterValues("A", 0));
    EXPECT_THAT(textsOf(service->ResolveValues("A", CCO::rtInstallation)), IsEmpty());
}

TEST_F(TakenName, MayBeThatOfMereValues)
{
    service->RegisterValues("A", sequenceOf({"mere", "values", "here"}), 0);
    EXPECT_NO_THROW(stranger->UnregisterValues("A", 0));
    EXPECT_THAT(textsOf(service->ResolveValues("A", CCO::rtInstallation)), IsEmpty());
}

/// The decision without a service, so that its traces can be read and nothing else takes the names of the dead away.
class Taking : public testing::Test
{
protected:
    Taking() : formerCapture(setTraceCapture([this](const TraceLine &line) { said += line.text; }))
    {
        registrar.put(name, CORBA::Object_var(CORBA::Object::_duplicate(object)), "10.0.0.1");
    }
    ~Taking() override
    {
        owner->retire();
        setTraceCapture(formerCapture);
    }

    QString said;
    const TraceCapture formerCapture;
    const CallbackOwner owner{RecordingCallback::make()};
    const CCO::Callback_var object{owner->reference()};
    Registry registry{[](CORBA::ULong, const std::string &) {}};
    Registrar registrar{registry, 500ms};
};

TEST_F(Taking, IsRefusedToAStrangerWithATrace)
{
    EXPECT_THROW(registrar.takeObject(name, "10.0.0.2"), CORBA::NO_PERMISSION);
    EXPECT_THAT(said.toStdString(), HasSubstr(std::string(name) + " is not taken away for 10.0.0.2: it is held by the object"));
    EXPECT_TRUE(registry.find(name));
}

TEST_F(Taking, IsForAnybodyWhenTheHolderIsGone)
{
    owner->retire();
    EXPECT_TRUE(CORBA::Object_var(registrar.takeObject(name, "10.0.0.2"))->_is_equivalent(object));
    EXPECT_FALSE(registry.find(name));
    EXPECT_THAT(said.toStdString(), HasSubstr(std::string(name) + " is held by nobody: it is taken away from the object"));
}

TEST_F(Taking, IsForTheProcessOfTheService)
{
    EXPECT_TRUE(CORBA::Object_var(registrar.takeObject(name, ""))->_is_equivalent(object));
    EXPECT_FALSE(registry.find(name));
}

TEST_F(Taking, IsOfWhatIsMeantAlone)
{
    registrar.put("A", Registry::Values{"1"}, "10.0.0.1");
    EXPECT_TRUE(CORBA::is_nil(CORBA::Object_var(registrar.takeObject("A", "10.0.0.1"))));
    registrar.takeValues(name, "10.0.0.1");
    registrar.takeValues("unknown", "10.0.0.1");
    EXPECT_TRUE(registry.find("A"));
    EXPECT_TRUE(registry.find(name));
}

} // namespace
