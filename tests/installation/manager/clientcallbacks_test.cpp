#include "tests/installation/manager/callbackclient.h"
#include "tests/installation/manager/fakerecorder.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/servedobject.h"

#include "installation/cco/orbaccess.h"
#include "installation/manager/callbackclients.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/testorb.h"
#include "tests/support/waiting.h"

#include "objectmodel/korve_storagestatus.h"

#include <QtTest/QTest>

using testing::ElementsAre;

namespace
{

/// A manager and a recorder "FAKE" that it follows.
class ClientCallbacks : public ManagerFixture
{
protected:
    ClientCallbacks() { startManager(); }
    /// Before what they use.
    ~ClientCallbacks() override { service.reset(); }

    void waitUntilFollowed()
    {
        ASSERT_TRUE(becomesAvailable("FAKE"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return fake->receiverCount() == 1; }, patienceMs));
    }
    bool isRegistered(const std::string &name)
    {
        return !CORBA::is_nil(CORBA::Object_var(cco->Resolve(name.c_str(), CCO::rtInstallation)));
    }
    /// Has clients told something until the name has gone.
    bool isForgottenOnceTold(const std::string &name)
    {
        return QTest::qWaitFor(
            [&] {
                tellSomething();
                return !isRegistered(name);
            },
            20000);
    }
    /// Has the client told something until it has heard it: it is found with a look of the manager.
    void waitUntilTold(const ServedObject<StateClient> &client)
    {
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                tellSomething();
                return !client->notes.all().empty();
            },
            20000));
    }

    void tellSomething() { fake->setStatus("R0", ++count % 2 == 0 ? TQ_KORVE::rsIDLE : TQ_KORVE::rsREPLAYING); }

    int count = 0;
    ServedObject<FakeRecorder> fake{cco, "KorveRecorder/FAKE/IF_Control"};
};

} // namespace

TEST_F(ClientCallbacks, TellOfWhatARecorderTells)
{
    waitUntilFollowed();
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/one");
    waitUntilTold(client);
    fake->setStatus("R1", TQ_KORVE::rsRECORDING);
    fake->setStatus("R1", TQ_KORVE::rsIDLE);
    fake->setStatus("R2", TQ_KORVE::rsCOPYING);
    fake->remove("R2");
    const std::vector<std::string> expected{"FAKE R1 R1-\xe4 3", "FAKE R1 R1-\xe4 5", "FAKE R2 R2-\xe4 6", "FAKE R2 R2-\xe4 5"};
    ASSERT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == expected.back(); }, patienceMs));
    const auto told = client->notes.all();
    ASSERT_GE(told.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.rbegin(), expected.rend(), told.rbegin()));
}

TEST_F(ClientCallbacks, TellOfWhatTheRealRecorderDoes)
{
    waitUntilFollowed();
    ASSERT_TRUE(becomesAvailable("REC1"));
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/one");
    waitUntilTold(client);
    const QByteArray id = importRecord(QStringLiteral("first.wav"), 100).toLatin1();
    const std::string busy = "REC1 " + id.toStdString() + " first 0";
    const std::string idle = "REC1 " + id.toStdString() + " first 5";
    const TQ_KORVE::IF_Control_var control = TQ_KORVE::IF_Control::_narrow(CORBA::Object_var(recorder->reference()));
    const TQ_KORVE::IF_ReplaySession_var session =
        control->getReplaySessionById(id.constData(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    EXPECT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == busy; }, patienceMs)) << busy;
    control->setRecordIdle(id.constData());
    EXPECT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == idle; }, patienceMs)) << idle;
}

TEST_F(ClientCallbacks, TellWhatWasMissedWhileTheRecorderToldNobody)
{
    waitUntilFollowed();
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/one");
    waitUntilTold(client);
    fake->setStatusUntold("R7", TQ_KORVE::rsRECORDING);
    EXPECT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == "FAKE R7 R7-\xe4 3"; }, patienceMs));
}

TEST_F(ClientCallbacks, AreTheRecordersAgainAfterItsRestart)
{
    waitUntilFollowed();
    fake->restart();
    waitUntilFollowed();
}

TEST_F(ClientCallbacks, TellWhatHasChangedWhileTheManagerWasDown)
{
    waitUntilFollowed();
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/one");
    waitUntilTold(client);
    fake->setStatus("R7", TQ_KORVE::rsRECORDING);
    ASSERT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == "FAKE R7 R7-\xe4 3"; }, patienceMs));
    service.reset();
    fake->setStatusUntold("R7", TQ_KORVE::rsIDLE);
    fake->setStatusUntold("R0", TQ_KORVE::rsIDLE);
    startManager();
    EXPECT_TRUE(QTest::qWaitFor([&] { return client->notes.all().back() == "FAKE R7 R7-\xe4 5"; }, patienceMs));
}

TEST_F(ClientCallbacks, UnregisterAClientThatIsGone)
{
    waitUntilFollowed();
    ServedObject<StateClient> dead(cco, "KorveManager/Callbacks/dead");
    dead.die();
    const ServedObject<StateClient> alive(cco, "KorveManager/Callbacks/alive");
    waitUntilTold(alive);
    EXPECT_TRUE(isForgottenOnceTold("KorveManager/Callbacks/dead")); // it may have been welcomed before it died
    EXPECT_TRUE(isRegistered("KorveManager/Callbacks/alive"));
}

TEST_F(ClientCallbacks, UnregisterAClientThatFailsThreeTimes)
{
    waitUntilFollowed();
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/failing");
    client->notes.failFromNowOn();
    EXPECT_TRUE(isForgottenOnceTold("KorveManager/Callbacks/failing"));
    EXPECT_GE(client->notes.all().size(), 3u);
}

TEST_F(ClientCallbacks, AreNotHeldUpByOneThatHangs)
{
    waitUntilFollowed();
    const MutePort silence;
    const QByteArray reference = "corbaloc::1.2@127.0.0.1:" + QByteArray::number(silence.port()) + "/Silent";
    cco->Register("KorveManager/Callbacks/mute",
                  CORBA::Object_var(TestOrb::instance().orb()->string_to_object(reference.constData())), 0);
    ServedObject<StateClient> hanging(cco, "KorveManager/Callbacks/hanging");
    hanging->notes.hang();
    const ServedObject<StateClient> client(cco, "KorveManager/Callbacks/one");
    waitUntilTold(client);
    waitUntilTold(hanging);
    const std::size_t before = client->notes.all().size();
    fake->setStatus("R1", TQ_KORVE::rsRECORDING);
    EXPECT_TRUE(client->notes.have(before + 1));
    EXPECT_EQ(hanging->notes.all().size(), 1u);
    hanging->notes.answer();
}

namespace
{

/// The free bytes of one device that a client has been told of, in the order of the news.
std::vector<qint64> freeBytesTold(Notes &notes, const char *device)
{
    std::vector<qint64> bytes;
    for (const std::string &xml : notes.all()) {
        KORVE_XML::KORVE_StorageStatus status;
        if (status.SetXmlString(QString::fromStdString(xml), false) && status.GetDeviceId() == QLatin1String(device) &&
            status.GetMassStorageStatus().GetTotalCapacity() == 1000)
            bytes.push_back(status.GetMassStorageStatus().GetFreeCapacity());
    }
    return bytes;
}

/// With nobody but recorders whose disks change as they are told.
class StorageCallbacks : public ClientCallbacks
{
protected:
    StorageCallbacks()
    {
        recorder.reset();
        CORBA::release(cco->Unregister("KorveRecorder/REC1/IF_Control", 0));
    }
    static bool hears(const ServedObject<StorageClient> &client, const char *device, qint64 bytes)
    {
        return QTest::qWaitFor(
            [&] {
                const std::vector<qint64> told = freeBytesTold(client->notes, device);
                return !told.empty() && told.back() == bytes;
            },
            20000);
    }
};

} // namespace

TEST_F(StorageCallbacks, TellHowItIsAndWhenItChanges)
{
    waitUntilFollowed();
    const ServedObject<StorageClient> client(cco, "KorveManager/StatusCallbacks/one");
    EXPECT_TRUE(hears(client, "FAKE", 500));
    fake->setFreeBytes(250);
    EXPECT_TRUE(hears(client, "FAKE", 250));
}

TEST_F(StorageCallbacks, TellNothingOfADeviceThatHasNotChanged)
{
    ServedObject<FakeRecorder> other(cco, "KorveRecorder/OTHER/IF_Control");
    waitUntilFollowed();
    ASSERT_TRUE(becomesAvailable("OTHER"));
    const ServedObject<StorageClient> client(cco, "KorveManager/StatusCallbacks/one");
    ASSERT_TRUE(hears(client, "OTHER", 500));
    other->setFreeBytes(250);
    EXPECT_TRUE(hears(client, "OTHER", 250));
    EXPECT_THAT(freeBytesTold(client->notes, "FAKE"), ElementsAre(500)); // which would have been told first
    service.reset();
}

namespace
{

/// Clients in a folder of their own, which are looked for only when the test says so.
class FollowedClients : public ManagerFixture
{
protected:
    using Clients = installation::CallbackClients;
    static constexpr const char *name = "Followers/one";

    static Clients::Message message(const char *text)
    {
        return {text, [text](CORBA::Object_ptr client) {
                    const auto own = TQ_KRV::IF_KorveStatusCallback::_unchecked_narrow(client);
                    TQ_KRV::IF_KorveStatusCallback_var(own)->NotifyCStorageStatus("", text);
                }};
    }
    void enroll() { cco->Register(name, CORBA::Object_var(client.reference()), 0); }
    void lookWithoutIt(int looks)
    {
        CORBA::release(cco->Unregister(name, 0));
        for (int look = 0; look < looks; ++look)
            clients.look();
    }
    /// What the client has been told when it has heard so many texts.
    std::vector<std::string> told(std::size_t count) { return client->notes.have(count), client->notes.all(); }

    ServedObject<StorageClient> client{"follower"};
    Clients clients{installation::RegisteredObjects(cco, "Followers/", std::chrono::seconds(1)),
                    [](CORBA::Object_ptr object) {
                        return installation::withCallLimit<TQ_KRV::IF_KorveStatusCallback>(object,
                                                                                           std::chrono::seconds(9));
                    },
                    [] { return std::vector{message("welcome")}; }};
};

} // namespace

TEST_F(FollowedClients, AreToldUntilTheThirdLookWithoutTheirName)
{
    enroll();
    clients.look();
    lookWithoutIt(2);
    clients.tell(message("still known"));
    enroll();
    clients.look();
    EXPECT_THAT(told(2), ElementsAre("welcome", "still known"));
    lookWithoutIt(3);
    enroll();
    clients.look();
    EXPECT_THAT(told(3), ElementsAre("welcome", "still known", "welcome")); // as one that nobody knows
}
