#include "appruntime/threadswitchingadministration.h"
#include "idl/cco.hh"
#include "orbconnection/backgroundthreads.h"
#include "orbconnection/corbaloc.h"
#include "tests/orbconnection/ownorb.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::ThreadSwitchingAdministration;

namespace
{

/// A servant whose call waits for the main thread.
class WaitingServant : public POA_CCO::Callback
{
public:
    explicit WaitingServant(QSemaphore &begun) : begun(begun) {}

    void notify(CORBA::ULong, const char *) override
    {
        begun.release();
        door->executeAndWait(RunInMainThreadEvent([] {}));
    }

private:
    QSemaphore &begun;
    const std::shared_ptr<ThreadingHelper::ThreadSwitchingHandler> door =
        ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QStringLiteral("orbend_test"));
};

/// Over the network, as another process calls.
void callFromOutside()
{
    const VtConnectData where = OwnOrb::addressFromOutside();
    const CORBA::Object_var object = OwnOrb::instance().orb()->string_to_object(
        CorbaCommon::corbaloc(where.ipAddress, 8004, "WAITING").toLatin1());
    CCO::Callback_var(CCO::Callback::_unchecked_narrow(object))->notify(0, "");
}

TEST(OrbEnd, ComesWithTheEndOfTheApplicationAlsoWhileACallWaitsForTheMainThread)
{
    int count = 0;
    std::optional<QCoreApplication> application(std::in_place, count, nullptr);
    CorbaCommon::OrbHandler &orb = OwnOrb::instance();
    ASSERT_TRUE(orb.isRunning());
    QSemaphore begun;
    const PortableServer::ServantBase_var servant = new WaitingServant(begun);
    orb.keyedPoa()->activate_object_with_id(
        PortableServer::ObjectId_var(PortableServer::string_to_ObjectId("WAITING")), servant.in());
    std::future<void> answered = std::async(std::launch::async, callFromOutside);
    begun.acquire();
    std::atomic<bool> hasWorkEnded = false;
    CorbaCommon::runInBackground([&] {
        while (!CorbaCommon::isBackgroundEnding())
            std::this_thread::yield();
        hasWorkEnded = true;
    });

    application.reset();
    EXPECT_TRUE(hasWorkEnded);
    EXPECT_FALSE(orb.isRunning());
    EXPECT_NO_THROW(answered.get());
    EXPECT_EQ(servant.in()->_refcount_value(), 1u) << "the ORB has let go of it";
}

} // namespace

// Without an application of its own, since that of the test ends within it.
int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
