#include "installation/cco/callbacklist.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/recordingcallback.h"
#include "tests/installation/cco/testorb.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace installation;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace
{

const CORBA::ULong available = CCO::eventAvailable;
const CORBA::ULong gone = CCO::eventGone;

class Queue : public testing::Test
{
protected:
    ~Queue() override
    {
        callback->release();
        callback->retire();
    }

    bool waitForEvents(std::size_t count)
    {
        return QTest::qWaitFor([&] { return callback->told().size() >= count; }, 5000);
    }

    const CallbackOwner callback{RecordingCallback::make()};
    const CCO::Callback_var reference{callback->reference()};
};

TEST_F(Queue, TellsOnlyWhatIsOfInterest)
{
    CallbackQueue queue(reference, {{gone, "A"}, {available, "R/"}}, 2s);
    queue.tell(available, "A");
    queue.tell(gone, "A");
    queue.tell(available, "R");
    queue.tell(available, "R/1/C");
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{gone, "A"}, ToldEvent{available, "R/1/C"}));
}

TEST_F(Queue, TakesNoInterestsForAll)
{
    CallbackQueue queue(reference, {}, 2s);
    queue.tell(available, "A");
    queue.tell(gone, "B");
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{available, "A"}, ToldEvent{gone, "B"}));
}

TEST_F(Queue, TakesTheEmptyNameForEveryName)
{
    CallbackQueue queue(reference, {{gone, ""}}, 2s);
    queue.tell(available, "A");
    queue.tell(gone, "B");
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_THAT(callback->told(), ElementsAre(ToldEvent{gone, "B"}));
}

TEST_F(Queue, TellsNothingAfterItIsClosed)
{
    CallbackQueue queue(reference, {}, 2s);
    queue.close();
    queue.tell(available, "A");
    ASSERT_TRUE(QTest::qWaitFor([&] { return queue.finished(); }, 5000));
    EXPECT_TRUE(callback->told().empty());
}

TEST(QueueOfASilentCallback, IsGivenUpAfterItsLimits)
{
    const MutePort silence;
    const std::string reference = "corbaloc::1.2@127.0.0.1:" + std::to_string(silence.port()) + "/Silent";
    const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object(reference.c_str());
    CallbackQueue queue(CCO::Callback_var(CCO::Callback::_unchecked_narrow(object)), {}, 50ms);
    for (int event = 0; event < 3; ++event)
        queue.tell(available, "A");
    EXPECT_TRUE(QTest::qWaitFor([&] { return queue.finished(); }, 5000));
}

TEST(QueueOfADeadCallback, IsGivenUp)
{
    const CallbackOwner callback(RecordingCallback::make());
    const CCO::Callback_var reference = callback->reference();
    callback->retire();
    CallbackQueue queue(reference, {}, 2s);
    queue.tell(available, "A");
    EXPECT_TRUE(QTest::qWaitFor([&] { return queue.finished(); }, 5000));
}

class ListOfCallbacks : public Queue
{
protected:
    void add(const std::string &key, const std::string &owner)
    {
        list.add(key, reference, {}, nullptr, owner);
    }

    CallbackList list{2s};
};

TEST_F(ListOfCallbacks, IsLimitedForEachAddressAndForAll)
{
    for (const char *owner : {"10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.4"}) {
        for (int i = 0; i < 64; ++i)
            add(owner + std::to_string(i), owner);
        EXPECT_THROW(add("one more", owner), CORBA::NO_RESOURCES);
    }
    EXPECT_THROW(add("one more", "10.0.0.5"), CORBA::NO_RESOURCES);
    list.stop();
}

TEST_F(ListOfCallbacks, KeepsOneThatMissesTwoLooks)
{
    add("A", "10.0.0.1");
    list.drop("A", Answer::Silent);
    list.drop("A", Answer::Silent);
    EXPECT_EQ(list.callbacks().size(), 1u);
    list.drop("A", Answer::Silent);
    EXPECT_TRUE(list.callbacks().empty());
    list.stop();
}

} // namespace
