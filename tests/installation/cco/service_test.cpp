#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/servicefixture.h"
#include "tests/installation/cco/testorb.h"

using namespace installation;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

using Naming = CCO::IF_CCO_c_Naming;

struct NamedPath {
    const char *label;
    std::string path;
};

std::string rowName(const testing::TestParamInfo<NamedPath> &info)
{
    return info.param.label;
}

class CentralService : public ServiceFixture
{
protected:
    CentralService() { startService(); }

    void registerObject(const char *name) { cco->Register(name, object, 0); }
    void registerValues(const char *name, const Texts &values) { cco->RegisterValues(name, sequenceOf(values), 0); }
};

class KnownPath : public CentralService, public testing::WithParamInterface<NamedPath>
{
};

TEST_P(KnownPath, LeadsToTheRegisteredObject)
{
    registerObject(managerName);
    const CORBA::Object_var found = cco->Resolve(GetParam().path.c_str(), CCO::rtInstallation);
    ASSERT_FALSE(CORBA::is_nil(found));
    EXPECT_TRUE(found->_is_equivalent(object));
}

TEST_P(KnownPath, IsGoodForRegistrationToo)
{
    registerObject(GetParam().path.c_str());
    EXPECT_TRUE(knows(managerName));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, KnownPath,
    testing::Values(NamedPath{"Bare", "KorveManager/IF_KRV_c_KRV"},
                    NamedPath{"Local", "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/IF_KRV_c_KRV"},
                    NamedPath{"LocalAsAName", pathIn("LocalSubSystem", "KorveManager/IF_KRV_c_KRV")},
                    NamedPath{"OwnName", pathIn("South", "KorveManager/IF_KRV_c_KRV")},
                    NamedPath{"OwnNameInOtherCase", pathIn("sOUTH", "KorveManager/IF_KRV_c_KRV")}),
    rowName);

class UnknownPath : public CentralService, public testing::WithParamInterface<NamedPath>
{
};

TEST_P(UnknownPath, LeadsToNil)
{
    registerObject(managerName);
    EXPECT_FALSE(knows(GetParam().path));
    EXPECT_THAT(valuesOf(GetParam().path), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Forms, UnknownPath,
                         testing::Values(NamedPath{"Empty", ""}, NamedPath{"NotRegistered", "KorveManager/Other"},
                                         NamedPath{"OtherCase", "korvemanager/IF_KRV_c_KRV"},
                                         NamedPath{"SystemAlone", "CCO/LocalSystem/"},
                                         NamedPath{"SubsystemsAlone", "CCO/LocalSystem/SubSystems/"},
                                         NamedPath{"SubsystemAlone", "CCO/LocalSystem/LocalSubSystem"},
                                         NamedPath{"UnknownSubsystem", pathIn("East", "KorveManager/IF_KRV_c_KRV")}),
                         rowName);

TEST_F(CentralService, IsFoundByItsKey)
{
    const std::string address = "corbaloc::1.2@127.0.0.1:" + std::to_string(TestOrb::instance().port()) + "/CCO";
    const CORBA::Object_var found = TestOrb::instance().orb()->string_to_object(address.c_str());
    const CCO::IF_CCO_c_var byKey = CCO::IF_CCO_c::_narrow(found);
    ASSERT_FALSE(CORBA::is_nil(byKey));
    EXPECT_STREQ(CORBA::String_var(byKey->GetSubSystemName()), "South");
}

TEST_F(CentralService, RefusesANilObject)
{
    EXPECT_THROW(cco->Register(managerName, CORBA::Object::_nil(), 0), Naming::InvalidObject);
}

TEST_F(CentralService, SupportsNoRedundancy)
{
    EXPECT_THROW(cco->Register(managerName, object, 1), Naming::RedundancyTypeNotSupported);
    EXPECT_THROW(cco->RegisterValues(managerName, CCO::seqString(), 1), Naming::RedundancyTypeNotSupported);
    EXPECT_THROW(CORBA::Object_var(cco->Unregister(managerName, 1)), Naming::RedundancyTypeNotSupported);
    EXPECT_THROW(cco->UnregisterValues(managerName, 1), Naming::RedundancyTypeNotSupported);
}

class BadName : public CentralService, public testing::WithParamInterface<NamedPath>
{
};

TEST_P(BadName, IsRefusedForRegistration)
{
    EXPECT_THROW(registerObject(GetParam().path.c_str()), CORBA::BAD_PARAM);
    EXPECT_THROW(registerValues(GetParam().path.c_str(), {}), CORBA::BAD_PARAM);
}

INSTANTIATE_TEST_SUITE_P(Forms, BadName,
                         testing::Values(NamedPath{"Empty", ""}, NamedPath{"Folder", "KorveManager/"},
                                         NamedPath{"Nowhere", "CCO/LocalSystem/Elsewhere/A"},
                                         NamedPath{"OfAnotherSubsystem", pathIn("North", "A")},
                                         NamedPath{"TooLong", std::string(1001, 'x')}),
                         rowName);

TEST_F(CentralService, GivesBackWhatIsUnregistered)
{
    registerObject(managerName);
    const CORBA::Object_var removed = cco->Unregister(managerName, 0);
    EXPECT_TRUE(removed->_is_equivalent(object));
    EXPECT_FALSE(knows(managerName));
    const CORBA::Object_var again = cco->Unregister(managerName, 0);
    EXPECT_TRUE(CORBA::is_nil(again));
}

TEST_F(CentralService, KeepsValues)
{
    registerValues("A", {"1", "", "3"});
    EXPECT_THAT(valuesOf("A"), ElementsAre("1", "", "3"));
    registerValues("A", {"2"});
    EXPECT_THAT(valuesOf(pathIn("LocalSubSystem", "A")), ElementsAre("2"));
    cco->UnregisterValues("A", 0);
    EXPECT_THAT(valuesOf("A"), IsEmpty());
}

TEST_F(CentralService, TellsObjectsFromValues)
{
    registerObject("Object");
    registerValues("Values", {"1"});
    EXPECT_THAT(valuesOf("Object"), IsEmpty());
    EXPECT_THROW(knows("Values"), Naming::InvalidType);
    const CORBA::Object_var none = cco->Unregister("Values", 0);
    EXPECT_TRUE(CORBA::is_nil(none));
    EXPECT_THAT(valuesOf("Values"), ElementsAre("1"));
}

TEST_F(CentralService, ListsTheNamesBelowAFolder)
{
    registerObject("KorveRecorder/D2/IF_Control");
    registerObject("KorveRecorder/D1/IF_Control");
    registerObject(managerName);
    EXPECT_THAT(valuesOf("KorveRecorder/"), ElementsAre("D1/IF_Control", "D2/IF_Control"));
    EXPECT_THAT(valuesOf(pathIn("South", "KorveRecorder/")), ElementsAre("D1/IF_Control", "D2/IF_Control"));
    EXPECT_THAT(valuesOf("CCO/LocalSystem/LocalSubSystem/CentralServices/"), testing::SizeIs(3));
}

TEST_F(CentralService, ListsNamesOfObjectsAndValuesAlike)
{
    registerValues("Clients/c", {"1"});
    registerObject("Clients/b/d");
    registerObject("Clients/a");
    registerObject("Clients");
    EXPECT_THAT(valuesOf("Clients/"), ElementsAre("a", "b/d", "c"));
    EXPECT_THAT(valuesOf("Clients/b/"), ElementsAre("d"));
    EXPECT_THAT(valuesOf("Clients/a/"), IsEmpty());
    EXPECT_THAT(valuesOf(pathIn("LocalSubSystem", "Clients/")), ElementsAre("a", "b/d", "c"));
    EXPECT_THAT(valuesOf(pathIn("North", "Clients/")), IsEmpty());
}

TEST_F(CentralService, DropsAnObjectThatIsGoneAndKeepsOneThatIsNot)
{
    const CallbackOwner mortal(RecordingCallback::make());
    cco->Register("Mortal", CCO::Callback_var(mortal->reference()), 0);
    registerObject("Living");
    ASSERT_TRUE(knows("Mortal"));
    mortal->retire();
    EXPECT_TRUE(waitUntil([&] { return !knows("Mortal"); }));
    EXPECT_TRUE(knows("Living"));
}

TEST_F(CentralService, DropsAnAddressThatRefuses)
{
    std::optional<MutePort> server(std::in_place);
    const Texts address{"127.0.0.1", std::to_string(server->port())};
    registerValues("KorveManager/VTConnect", address);
    registerValues("Plain", {"no", "address"});
    const RefusingPort refusing;
    registerValues("Refusing", {"127.0.0.1", std::to_string(refusing.port())});
    ASSERT_TRUE(waitUntil([&] { return valuesOf("Refusing").empty(); }));
    EXPECT_EQ(valuesOf("KorveManager/VTConnect"), address); // probed in the same rounds
    server.reset();
    EXPECT_TRUE(waitUntil([&] { return valuesOf("KorveManager/VTConnect").empty(); }));
    EXPECT_THAT(valuesOf("Plain"), ElementsAre("no", "address"));
}

TEST_F(CentralService, DropsAnAddressThatStaysSilent)
{
    const DeafPort deaf;
    registerValues("KorveManager/VTConnect", {"127.0.0.1", std::to_string(deaf.port())});
    EXPECT_TRUE(waitUntil([&] { return valuesOf("KorveManager/VTConnect").empty(); }));
}

TEST_F(CentralService, NamesItself)
{
    EXPECT_STREQ(CORBA::String_var(cco->GetSystemName()), "System");
    EXPECT_STREQ(CORBA::String_var(cco->GetSubSystemName()), "South");
    EXPECT_STREQ(CORBA::String_var(cco->GetWorkstationName()), "ws1");
}

TEST_F(CentralService, ListsSubsystemsAndWorkstations)
{
    EXPECT_THAT(textsOf(cco->GetSubSystems()), ElementsAre("South", "West"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("South")), ElementsAre("ws1", "ws2"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("LocalSubSystem")), ElementsAre("ws1", "ws2"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("")), ElementsAre("ws1", "ws2"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("west")), ElementsAre("w1", "w2"));
    EXPECT_THAT(textsOf(cco->GetWorkstations("East")), IsEmpty());
    EXPECT_THAT(textsOf(cco->GetWorkStationsFromCCOConfig("South")), ElementsAre("ws2"));
    EXPECT_THAT(textsOf(cco->GetSystemWorkstations()), ElementsAre("WS1", "w1"));
    EXPECT_TRUE(cco->IsLocalHostASystemWorkstation());
}

TEST_F(CentralService, TellsWhichWorkstationsAreIndicated)
{
    EXPECT_TRUE(cco->IsWorkstationIndicated("South", "WS1"));
    EXPECT_FALSE(cco->IsWorkstationIndicated("South", "ws2"));
    EXPECT_FALSE(cco->IsRemoteCCOIndicated("West"));
    EXPECT_THROW(cco->IsWorkstationIndicated("South", "w1"), CCO::IF_CCO_c::NameNotAvailable);
    EXPECT_THROW(cco->IsWorkstationIndicated("East", "w1"), CCO::IF_CCO_c::NameNotAvailable);
    EXPECT_THROW(cco->IsRemoteCCOIndicated("East"), CCO::IF_CCO_c::NameNotAvailable);
}

TEST_F(CentralService, TakesIndicationsOfWorkstations)
{
    const std::string address = "corbaloc::1.2@127.0.0.1:" + std::to_string(TestOrb::instance().port()) + "/CCOUpdate";
    const CORBA::Object_var found = TestOrb::instance().orb()->string_to_object(address.c_str());
    const CCO::IF_CCO_c_Update_var update = CCO::IF_CCO_c_Update::_narrow(found);
    ASSERT_FALSE(CORBA::is_nil(update));
    EXPECT_FALSE(update->CheckIndication("ws2"));
    update->StartupIndication("WS2");
    EXPECT_TRUE(update->CheckIndication("ws2"));
    EXPECT_TRUE(cco->IsWorkstationIndicated("South", "ws2"));
    update->CentralServicesIndication("ws2");
    update->ShutdownIndication("ws2");
    EXPECT_FALSE(cco->IsWorkstationIndicated("South", "ws2"));
}

TEST_F(CentralService, IsTheOnlyOneOfItsProcess)
{
    EXPECT_THROW(CentralObjectService(configuration, TestOrb::instance().insPoa()),
                 PortableServer::POA::ObjectAlreadyActive);
    EXPECT_STREQ(CORBA::String_var(cco->GetSystemName()), "System");
}

TEST_F(CentralService, CanBeStartedAgain)
{
    registerObject(managerName);
    const CCO::IF_CCO_c_var former = CCO::IF_CCO_c::_duplicate(cco);
    service.reset();
    EXPECT_THROW(CORBA::String_var(former->GetSystemName()), CORBA::OBJECT_NOT_EXIST);
    startService();
    EXPECT_FALSE(knows(managerName)); // it fills itself by the registrations of the services
}

TEST_F(ServiceFixture, WithoutNamesHasNone)
{
    const auto timing = configuration.timing;
    configuration = CentralObjectConfiguration();
    configuration.timing = timing;
    startService();
    EXPECT_THROW(CORBA::String_var(cco->GetSystemName()), CCO::IF_CCO_c::NameNotAvailable);
    EXPECT_THROW(CORBA::String_var(cco->GetSubSystemName()), CCO::IF_CCO_c::NameNotAvailable);
    EXPECT_THROW(CORBA::String_var(cco->GetWorkstationName()), CCO::IF_CCO_c::NameNotAvailable);
    EXPECT_THAT(textsOf(cco->GetSubSystems()), IsEmpty());
    EXPECT_FALSE(cco->IsLocalHostASystemWorkstation());
    cco->Register(managerName, object, 0);
    EXPECT_TRUE(knows(pathIn("LocalSubSystem", managerName)));
}

TEST_F(ServiceFixture, RefusesAPeerWithoutAnAddress)
{
    for (const CentralObjectConfiguration::Peer &peer :
         {CentralObjectConfiguration::Peer{"", 8003}, {"127.0.0.1", 0}, {"two words", 8003}, {"a/b", 8003}}) {
        configuration.peers = {peer};
        EXPECT_THROW(startService(), std::invalid_argument) << peer.host;
    }
}

} // namespace
