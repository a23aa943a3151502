#include "tests/support/waiting.h"

#include "installation/calls/callqueue.h"

#include <omniORB4/CORBA.h>

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <mutex>
#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;

/// Somebody who is called: writes down by whom, and can be made to hang and to fail.
class Receiver
{
public:
    installation::CallQueue::Call call(const std::string &subject)
    {
        return {subject, [this, subject] { take(subject); }};
    }
    installation::CallQueue::Call failingCall(const std::string &subject)
    {
        return {subject, [this, subject] {
                    take(subject);
                    throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO);
                }};
    }
    void hang() { mayAnswer.lock(); }
    void answer() { mayAnswer.unlock(); }

    bool hasHeard(std::size_t count)
    {
        return QTest::qWaitFor([&] { return heard().size() >= count; }, patienceMs);
    }
    std::vector<std::string> heard()
    {
        const std::scoped_lock lock(mutex);
        return subjects;
    }

private:
    void take(const std::string &subject)
    {
        {
            const std::scoped_lock lock(mutex);
            subjects.push_back(subject);
        }
        const std::scoped_lock wait(mayAnswer);
    }

    std::mutex mutex;
    std::mutex mayAnswer; // held by the test while the receiver hangs
    std::vector<std::string> subjects;
};

bool finishes(const installation::CallQueue &queue)
{
    return QTest::qWaitFor([&] { return queue.finished(); }, patienceMs);
}

class CallQueue : public testing::Test
{
protected:
    Receiver receiver; // outlives the queue
    installation::CallQueue queue;
};

} // namespace

TEST_F(CallQueue, MakesTheCallsInTheirOrder)
{
    for (const char *subject : {"A", "B", "C"})
        queue.add(receiver.call(subject));
    ASSERT_TRUE(receiver.hasHeard(3));
    EXPECT_THAT(receiver.heard(), ElementsAre("A", "B", "C"));
    EXPECT_FALSE(queue.finished());
}

TEST_F(CallQueue, LosesTheOldestCallsOfOneThatFallsBehind)
{
    const std::size_t most = installation::CallQueue::maximumCalls;
    receiver.hang();
    queue.add(receiver.call("first"));
    ASSERT_TRUE(receiver.hasHeard(1));
    for (std::size_t i = 0; i < most + 5; ++i)
        queue.add(receiver.call(std::to_string(i)));
    receiver.answer();
    ASSERT_TRUE(receiver.hasHeard(1 + most));
    EXPECT_EQ(receiver.heard().at(1), "5");
    EXPECT_EQ(receiver.heard().back(), std::to_string(most + 4));
}

TEST_F(CallQueue, GivesUpOneThatFailsThreeTimesInARow)
{
    queue.add(receiver.failingCall("1"));
    queue.add(receiver.failingCall("2"));
    queue.add(receiver.call("3"));
    for (const char *subject : {"4", "5", "6", "7"})
        queue.add(receiver.failingCall(subject));
    ASSERT_TRUE(finishes(queue));
    EXPECT_TRUE(queue.givenUp());
    EXPECT_THAT(receiver.heard(), ElementsAre("1", "2", "3", "4", "5", "6"));
}

TEST_F(CallQueue, GivesUpAtOnceOneThatIsNoLongerThere)
{
    queue.add({"A", [] { throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO); }});
    queue.add(receiver.call("B"));
    ASSERT_TRUE(finishes(queue));
    EXPECT_TRUE(queue.givenUp());
    EXPECT_THAT(receiver.heard(), ElementsAre());
}

TEST_F(CallQueue, MakesTheCallsThatWaitWhenItFinishes)
{
    receiver.hang();
    queue.add(receiver.call("A"));
    queue.add(receiver.call("B"));
    ASSERT_TRUE(receiver.hasHeard(1));
    queue.finish();
    EXPECT_FALSE(queue.finished());
    receiver.answer();
    ASSERT_TRUE(finishes(queue));
    EXPECT_FALSE(queue.givenUp());
    EXPECT_THAT(receiver.heard(), ElementsAre("A", "B"));
}

TEST_F(CallQueue, BeginsNoCallAfterItIsClosed)
{
    receiver.hang();
    queue.add(receiver.call("A"));
    queue.add(receiver.call("B"));
    ASSERT_TRUE(receiver.hasHeard(1));
    queue.close();
    receiver.answer();
    ASSERT_TRUE(finishes(queue));
    EXPECT_FALSE(queue.givenUp());
    EXPECT_THAT(receiver.heard(), ElementsAre("A"));
}
