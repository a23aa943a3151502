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
    std::vector<ToldEvent> changes;
    Registry registry{[this](CORBA::ULong event, const std::string &name) { changes.push_back({event, name}); }};
};

using Values = Registry::Values;

const CORBA::ULong available = CCO::eventAvailable;
const CORBA::ULong gone = CCO::eventGone;

TEST_F(Names, AreReportedWhenTheyComeChangeAndGo)
{
    registry.put("A", Values{"1"});
    registry.put("A", Values{"2"});
    registry.takeValues("A");
    EXPECT_THAT(changes, ElementsAre(ToldEvent{available, "A"}, ToldEvent{available, "A"}, ToldEvent{gone, "A"}));
}

TEST_F(Names, AreNotReportedWhenTheyAreOnlyRepeated)
{
    const CallbackOwner object(RecordingCallback::make());
    const CCO::Callback_var reference = object->reference();
    for (int i = 0; i < 2; ++i) {
        registry.put("A", Values{"1"});
        registry.put("B", CORBA::Object_var(CORBA::Object::_duplicate(reference)));
    }
    EXPECT_THAT(changes, SizeIs(2));
    object->retire();
}

TEST_F(Names, AreKeptWhenRegisteredAgainWhileTheyWereFoundDead)
{
    registry.put("A", Values{"1"});
    const Registry::Entry probed = registry.entries().front();
    registry.put("A", Values{"1"});
    EXPECT_FALSE(registry.drop(probed));
    EXPECT_TRUE(registry.find("A"));
    EXPECT_TRUE(registry.drop(registry.entries().front()));
    EXPECT_FALSE(registry.find("A"));
}

TEST_F(Names, AreTakenOnlyAsWhatTheyAre)
{
    registry.put("A", Values{"1"});
    const CORBA::Object_var object = registry.takeObject("A");
    EXPECT_TRUE(CORBA::is_nil(object));
    EXPECT_TRUE(registry.find("A"));
    registry.takeValues("unknown");
    EXPECT_THAT(changes, SizeIs(1));
}

TEST_F(Names, BelowAFolderAreSortedAndRelative)
{
    for (const char *name : {"R/2/C", "R/1/C", "R", "RX/3", "S/4"})
        registry.put(name, Values{});
    EXPECT_THAT(registry.namesBelow("R/"), ElementsAre("1/C", "2/C"));
    EXPECT_THAT(registry.namesBelow(""), SizeIs(5));
    EXPECT_THAT(registry.namesBelow("Z/"), IsEmpty());
}

TEST_F(Names, AreLimitedInNumber)
{
    for (int i = 0; i < 10000; ++i)
        registry.put(std::to_string(i), Values{});
    EXPECT_THROW(registry.put("one more", Values{}), CORBA::NO_RESOURCES);
    EXPECT_NO_THROW(registry.put("1", Values{"replaced"}));
}

} // namespace
