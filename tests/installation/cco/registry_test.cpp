#include "installation/cco/registry.h"
#include "tests/installation/cco/recordingcallback.h"

#include <gmock/gmock.h>

using namespace installation;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

class Names : public testing::Test
{
protected:
    /// As somebody else's wish for it would end, whose holder is gone.
    void take(const std::string &name, const Registry::Content &content, const std::string &owner = "10.0.0.1")
    {
        const Registry::Outcome outcome = registry.offer(name, content, owner);
        EXPECT_TRUE(!outcome.holder || registry.replace(*outcome.holder, content, owner));
    }

    bool giveUp(const std::string &name) { return registry.take(registry.find(name).value()); }

    std::vector<ToldEvent> changes;
    Registry registry{[this](CORBA::ULong event, const std::string &name) { changes.push_back({event, name}); }};
};

using Values = Registry::Values;

const CORBA::ULong available = CCO::eventAvailable;
const CORBA::ULong gone = CCO::eventGone;

TEST_F(Names, AreReportedWhenTheyComeChangeAndGo)
{
    take("A", Values{"1"});
    take("A", Values{"2"});
    EXPECT_TRUE(giveUp("A"));
    EXPECT_THAT(changes, ElementsAre(ToldEvent{available, "A"}, ToldEvent{available, "A"}, ToldEvent{gone, "A"}));
}

TEST_F(Names, AreNotReportedWhenTheyAreOnlyRepeated)
{
    const CallbackOwner object(RecordingCallback::make());
    const CCO::Callback_var reference = object->reference();
    for (int i = 0; i < 2; ++i) {
        take("A", Values{"1"});
        take("B", CORBA::Object_var(CORBA::Object::_duplicate(reference)));
    }
    EXPECT_THAT(changes, SizeIs(2));
    object->retire();
}

TEST_F(Names, SayWhoHasThemAndStayWithIt)
{
    EXPECT_TRUE(registry.offer("A", Values{"1"}, "10.0.0.1").isNew);
    const Registry::Outcome outcome = registry.offer("A", Values{"2"}, "10.0.0.2");
    ASSERT_TRUE(outcome.holder);
    EXPECT_EQ(std::get<Values>(outcome.holder->content), Values{"1"});
    EXPECT_EQ(std::get<Values>(registry.find("A")->content), Values{"1"});
}

TEST_F(Names, StayWithAHolderThatRepeatsThemMeanwhile)
{
    take("A", Values{"1"});
    const Registry::Outcome outcome = registry.offer("A", Values{"2"}, "10.0.0.2");
    take("A", Values{"1"});
    EXPECT_FALSE(registry.replace(*outcome.holder, Values{"2"}, "10.0.0.2"));
    EXPECT_FALSE(registry.take(*outcome.holder));
    EXPECT_EQ(std::get<Values>(registry.find("A")->content), Values{"1"});
}

TEST_F(Names, AreKeptWhenRegisteredAgainWhileTheyWereFoundDead)
{
    take("A", Values{"1"});
    const Registry::Entry probed = registry.entries().front();
    take("A", Values{"1"});
    EXPECT_FALSE(registry.drop(probed, Answer::Gone));
    EXPECT_TRUE(registry.find("A"));
    EXPECT_TRUE(registry.drop(registry.entries().front(), Answer::Gone));
    EXPECT_FALSE(registry.find("A"));
}

TEST_F(Names, OutliveTwoMisses)
{
    take("A", Values{"1"});
    const auto look = [&](Answer answer) { return registry.drop(registry.entries().front(), answer); };
    EXPECT_FALSE(look(Answer::Silent));
    EXPECT_FALSE(look(Answer::Silent));
    EXPECT_FALSE(look(Answer::Lives));
    EXPECT_FALSE(look(Answer::Silent));
    EXPECT_FALSE(look(Answer::Silent));
    take("A", Values{"1"}); // a repetition is no answer
    EXPECT_TRUE(look(Answer::Silent));
    EXPECT_FALSE(registry.find("A"));
}

TEST_F(Names, DoNotHandTheSilenceOfAHolderToTheNext)
{
    take("A", Values{"1"});
    const Registry::Entry former = registry.entries().front();
    registry.drop(former, Answer::Silent);
    take("A", Values{"2"});
    for (int look = 0; look < 3; ++look)
        EXPECT_FALSE(registry.drop(former, Answer::Silent));
    EXPECT_FALSE(registry.drop(registry.entries().front(), Answer::Silent));
}

TEST_F(Names, BelowAFolderAreSortedAndRelative)
{
    for (const char *name : {"R/2/C", "R/1/C", "R", "RX/3", "S/4"})
        take(name, Values{});
    EXPECT_THAT(registry.namesBelow("R/"), ElementsAre("1/C", "2/C"));
    EXPECT_THAT(registry.namesBelow(""), SizeIs(5));
    EXPECT_THAT(registry.namesBelow("Z/"), IsEmpty());
}

TEST_F(Names, AreLimitedInNumberForEachAddressAndForAll)
{
    for (const char *owner : {"10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.4"}) {
        for (int i = 0; i < 1000; ++i)
            take(owner + std::to_string(i), Values{}, owner);
        EXPECT_THROW(take("one more", Values{}, owner), CORBA::NO_RESOURCES);
    }
    EXPECT_THROW(take("one more", Values{}, "10.0.0.5"), CORBA::NO_RESOURCES);
    EXPECT_NO_THROW(take("KorveRecorder/1", Values{}, "10.0.0.1"));
    EXPECT_NO_THROW(take("10.0.0.11", Values{"replaced"}));
}

TEST_F(Names, GiveTheirRoomBack)
{
    const Values large(1, std::string(900'000, 'x'));
    take("A", large);
    EXPECT_THROW(take("B", large), CORBA::NO_RESOURCES);
    EXPECT_TRUE(giveUp("A"));
    EXPECT_NO_THROW(take("B", large));
    EXPECT_NO_THROW(take("B", Values{std::string(900'000, 'y')}));
}

TEST_F(Names, GiveTheirBytesBackAlsoBesideOthersOfTheirAddress)
{
    take("Stays", Values{"1"});
    for (int times = 0; times < 10; ++times) {
        ASSERT_NO_THROW(take("A", Values(1, std::string(900'000, 'x')))) << times;
        ASSERT_TRUE(giveUp("A"));
    }
}

TEST_F(Names, GoWhenTheirNextHolderHasNoRoom)
{
    take("A", Values{"1"}, "10.0.0.1");
    EXPECT_THROW(take("A", Values(1, std::string(2'000'000, 'x')), "10.0.0.2"), CORBA::NO_RESOURCES);
    EXPECT_FALSE(registry.find("A"));
    EXPECT_THAT(changes, ElementsAre(ToldEvent{available, "A"}, ToldEvent{gone, "A"}));
}

} // namespace
