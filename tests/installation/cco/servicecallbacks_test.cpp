#include "tests/installation/cco/servicefixture.h"
#include "tests/installation/cco/testorb.h"

using testing::ElementsAre;

namespace
{

const CORBA::ULong available = CCO::eventAvailable;
const CORBA::ULong gone = CCO::eventGone;

class CallbackOfAService : public ServiceFixture
{
protected:
    CallbackOfAService() { startService(); }
    ~CallbackOfAService() override { callback->release(); }

    CCO::CBRegistration_ptr subscribe(const CallbackOwner &to, const CCO::seqInterest &interests = {})
    {
        return cco->register_callback(CCO::Callback_var(to->reference()), interests);
    }

    void setName(const char *name, const char *value) { cco->RegisterValues(name, sequenceOf({value}), 0); }

    static bool waitForEvents(const CallbackOwner &of, std::size_t count)
    {
        return waitUntil([&] { return of->told().size() >= count; });
    }

    const CallbackOwner callback{RecordingCallback::make()};
};

TEST_F(CallbackOfAService, HearsOfANameThatComesAndGoes)
{
    CCO::seqInterest interests;
    interests.length(2);
    interests[0].event = available;
    interests[0].name = "KorveManager/VTConnect";
    interests[1].event = gone;
    interests[1].name = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/VTConnect";
    const CCO::CBRegistration_var registration = subscribe(callback, interests);
    setName("Other", "1");
    setName("KorveManager/VTConnect", "1");
    setName("KorveManager/VTConnect", "1"); // a repetition, not an event
    cco->UnregisterValues("KorveManager/VTConnect", 0);
    setName("KorveManager/VTConnect", "2");
    ASSERT_TRUE(waitForEvents(callback, 3));
    EXPECT_THAT(callback->told(),
                ElementsAre(ToldEvent{available, "KorveManager/VTConnect"}, ToldEvent{gone, "KorveManager/VTConnect"},
                            ToldEvent{available, "KorveManager/VTConnect"}));
}

TEST_F(CallbackOfAService, HearsOfAnObjectThatDies)
{
    const CCO::CBRegistration_var registration = subscribe(callback);
    const CallbackOwner mortal(RecordingCallback::make());
    cco->Register("Mortal", CCO::Callback_var(mortal->reference()), 0);
    mortal->retire();
    ASSERT_TRUE(waitForEvents(callback, 2));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{available, "Mortal"}, ToldEvent{gone, "Mortal"}));
}

TEST_F(CallbackOfAService, HearsNothingAfterItsRegistrationEnds)
{
    const CallbackOwner other(RecordingCallback::make());
    const CCO::CBRegistration_var registration = subscribe(callback);
    const CCO::CBRegistration_var otherRegistration = subscribe(other);
    setName("A", "1");
    ASSERT_TRUE(waitForEvents(callback, 1));
    registration->unregister();
    setName("B", "1");
    ASSERT_TRUE(waitForEvents(other, 2));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{available, "A"}));
    EXPECT_THROW(registration->unregister(), CORBA::OBJECT_NOT_EXIST);
}

TEST_F(CallbackOfAService, MayEndItsRegistrationWhileItIsTold)
{
    const CCO::CBRegistration_var registration = subscribe(callback);
    callback->unregisterWhenTold(registration);
    setName("A", "1");
    EXPECT_TRUE(waitUntil([&] { return registration->_non_existent(); }));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{available, "A"}));
}

TEST_F(CallbackOfAService, DelaysNobodyWhenItIsSlow)
{
    const CallbackOwner quick(RecordingCallback::make());
    const CCO::CBRegistration_var slowRegistration = subscribe(callback);
    const CCO::CBRegistration_var quickRegistration = subscribe(quick);
    callback->block();
    for (int i = 0; i < 100; ++i)
        setName("A", std::to_string(i).c_str());
    ASSERT_TRUE(waitForEvents(quick, 100));
    EXPECT_EQ(callback->told().size(), 1u);
    callback->release();
    EXPECT_TRUE(waitForEvents(callback, 100));
}

TEST_F(CallbackOfAService, IsForgottenWhenItIsDead)
{
    const CallbackOwner dead(RecordingCallback::make());
    const CCO::CBRegistration_var registration = subscribe(dead);
    ASSERT_FALSE(registration->_non_existent());
    dead->retire();
    EXPECT_TRUE(waitUntil([&] { return registration->_non_existent(); }));
}

TEST_F(CallbackOfAService, MustNotBeNil)
{
    EXPECT_THROW(CCO::CBRegistration_var(cco->register_callback(CCO::Callback::_nil(), {})), CORBA::BAD_PARAM);
}

TEST_F(CallbackOfAService, MustNotHaveAHugeReference)
{
    const std::string place = "corbaloc::1.2@127.0.0.1:9/" + std::string(20'000, 'x');
    const CORBA::Object_var huge = TestOrb::instance().orb()->string_to_object(place.c_str());
    const CCO::Callback_var nobody = CCO::Callback::_unchecked_narrow(huge);
    EXPECT_THROW(CCO::CBRegistration_var(cco->register_callback(nobody, {})), CORBA::BAD_PARAM);
}

TEST_F(CallbackOfAService, IsOneOfALimitedNumberOfItsAddress)
{
    for (int i = 0; i < 64; ++i)
        CCO::CBRegistration_var(subscribe(callback));
    EXPECT_THROW(CCO::CBRegistration_var(subscribe(callback)), CORBA::NO_RESOURCES);
}

} // namespace
