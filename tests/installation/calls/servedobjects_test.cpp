#include "installation/calls/servedobjects.h"

#include "idl/cco.hh"
#include "tests/appruntime/capturedtraces.h"
#include "tests/installation/cco/testorb.h"

#include <QSemaphore>

#include <gmock/gmock.h>

#include <future>

using installation::Activation;
using installation::ServedObjects;
using namespace std::chrono_literals;

namespace
{

/// What a servant and its test share.
struct Course {
    QSemaphore begun;
    QSemaphore allowed;
    std::atomic<int> calls = 0;
    std::atomic<bool> isDestroyed = false;
};

/// A servant whose calls wait until they are allowed to end.
class SlowServant : public POA_CCO::Callback
{
public:
    explicit SlowServant(Course &course) : course(course) {}
    ~SlowServant() override { course.isDestroyed = true; }

    void notify(CORBA::ULong, const char *) override
    {
        ++course.calls;
        course.begun.release();
        course.allowed.acquire();
    }

private:
    Course &course;
};

class ServedObjectsTest : public testing::Test
{
protected:
    ServedObjectsTest()
    {
        activation = objects.serve<SlowServant>("SLOW", course);
        // 127.0.0.1 in another way of writing, so that calls go over the network as those of another process.
        const std::string elsewhere = "corbaloc::1.2@2130706433:" + std::to_string(TestOrb::instance().port()) + "/SLOW";
        const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object(elsewhere.c_str());
        callback = CCO::Callback::_unchecked_narrow(object);
    }
    ~ServedObjectsTest() override
    {
        course.allowed.release(100);
        objects.refuseCalls();
        objects.waitForCalls();
    }

    std::future<bool> call()
    {
        return std::async(std::launch::async, [this] {
            try {
                callback->notify(0, "");
                return true;
            } catch (const CORBA::OBJECT_NOT_EXIST &) {
                return false;
            }
        });
    }
    std::future<bool> callInProgress()
    {
        std::future<bool> answered = call();
        course.begun.acquire();
        return answered;
    }

    Course course;
    const ServedObjects objects{TestOrb::instance().insPoa()};
    std::shared_ptr<Activation> activation;
    CCO::Callback_var callback;
};

} // namespace

TEST_F(ServedObjectsTest, AnswersTheCallInProgressAndKeepsNoServant)
{
    std::future<bool> answered = callInProgress();
    objects.refuseCalls();
    EXPECT_FALSE(objects.waitForCalls(0ms));
    EXPECT_FALSE(course.isDestroyed);
    course.allowed.release();
    EXPECT_TRUE(objects.waitForCalls());
    EXPECT_TRUE(course.isDestroyed);
    EXPECT_TRUE(answered.get());
}

TEST_F(ServedObjectsTest, RefusesNewCallsAlsoWhileOneIsInProgress)
{
    std::future<bool> answered = callInProgress();
    objects.refuseCalls();
    EXPECT_FALSE(call().get());
    EXPECT_EQ(course.calls, 1);
    course.allowed.release();
    EXPECT_TRUE(answered.get());
}

TEST_F(ServedObjectsTest, IsToldWhenTheLastCallEnds)
{
    std::future<bool> answered = callInProgress();
    objects.refuseCalls();
    QSemaphore waits;
    std::future<bool> ended = std::async(std::launch::async, [&] {
        waits.release();
        return objects.waitForCalls(60s);
    });
    waits.acquire();
    course.allowed.release();
    EXPECT_EQ(ended.wait_for(30s), std::future_status::ready); // and not with the end of its patience
    EXPECT_TRUE(ended.get());
    EXPECT_TRUE(answered.get());
}

TEST_F(ServedObjectsTest, NamesAServantThatSomebodyHereUses)
{
    SlowServant *const used = objects.make<SlowServant>("USED", course);
    objects.refuseCalls();
    const CapturedTraces traces;
    EXPECT_FALSE(objects.waitForCalls(0ms));
    EXPECT_THAT(traces.texts(), testing::ElementsAre(testing::EndsWith("in progress: USED")));
    used->_remove_ref();
}

TEST_F(ServedObjectsTest, SaysWhichCallsAreInProgress)
{
    course.allowed.release();
    EXPECT_TRUE(callInProgress().get()); // which is none any more
    std::future<bool> answered = callInProgress();
    const CapturedTraces traces;
    objects.refuseCalls();
    EXPECT_FALSE(objects.waitForCalls(1ms));
    EXPECT_THAT(traces.texts(), testing::ElementsAre("The service ends although calls are in progress: notify of SLOW"));
    course.allowed.release();
    EXPECT_TRUE(answered.get());
}

TEST_F(ServedObjectsTest, ServesNothingAfterTheEnd)
{
    objects.refuseCalls();
    EXPECT_THROW(objects.serve<SlowServant>("LATE", course), CORBA::OBJECT_NOT_EXIST);
    EXPECT_TRUE(objects.waitForCalls());
}

TEST_F(ServedObjectsTest, LetsACallEndItsOwnObject)
{
    const CapturedTraces traces;
    std::future<bool> answered = callInProgress();
    activation->end();
    activation.reset();
    EXPECT_THAT(traces.texts(), testing::IsEmpty());
    course.allowed.release();
    EXPECT_TRUE(answered.get());
    objects.refuseCalls();
    EXPECT_TRUE(objects.waitForCalls());
}
