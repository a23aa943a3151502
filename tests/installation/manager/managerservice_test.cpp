#include "tests/installation/manager/fakerecorder.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/servedobject.h"

#include "installation/calls/activation.h"
#include "installation/recorder/controlservant.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/testorb.h"
#include "tests/support/waiting.h"

#include <QtTest/QTest>

#include <condition_variable>
#include <list>

using Kinds = TQ_KRV::IF_KRV_c_KRV;

using ManagerService = ManagerFixture;

namespace
{

/// A recorder with so many records that the list does not come within the limit.
class LongList : public installation::recorder::ControlServant
{
public:
    explicit LongList(std::shared_ptr<installation::recorder::StoreThread> store)
        : ControlServant(std::move(store), nullptr, nullptr, "v1")
    {
    }
    void announceNotificationReceiver(Receiver) override {} // it has no sessions, and nothing to tell
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx3() override { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); }
};

/// Where so many calls wait for each other, until somebody lets them go.
class Meeting
{
public:
    explicit Meeting(int size) : size(size) {}
    void attend()
    {
        std::unique_lock lock(mutex);
        ++present;
        changed.notify_all();
        changed.wait(lock, [this] { return isComplete || present >= size; });
        isComplete = true;
    }
    bool areThere(int wanted)
    {
        const std::scoped_lock lock(mutex);
        return present >= wanted;
    }
    /// How many have come so far.
    int close()
    {
        const std::scoped_lock lock(mutex);
        isComplete = true;
        changed.notify_all();
        return present;
    }

private:
    const int size;
    std::mutex mutex; // guards the rest
    std::condition_variable changed;
    int present = 0;
    bool isComplete = false;
};

/// A recorder that says nothing before others have been asked, too.
class WaitingRecorder : public FakeRecorder
{
public:
    void waitFor(Meeting &others) { meeting = &others; }
    char *getFirmwareVersion() override
    {
        if (Meeting *const others = meeting)
            others->attend();
        return FakeRecorder::getFirmwareVersion();
    }

private:
    std::atomic<Meeting *> meeting = nullptr;
};

/// A manager that finds many recorders, which are called by their numbers.
class ManagerOfManyDevices : public ManagerService
{
protected:
    void registerRecorders(int count, Meeting &meeting)
    {
        for (int number = 0; number < count; ++number) {
            const std::string device = std::to_string(number);
            waiting.emplace_back("Waiting" + device)->waitFor(meeting);
            registerRecorder(device.c_str(), CORBA::Object_var(waiting.back().reference()));
        }
        startManager();
    }
    void expectAllAvailable()
    {
        for (std::size_t number = 0; number < waiting.size(); ++number)
            EXPECT_TRUE(becomesAvailable(std::to_string(number).c_str()));
        service.reset();
    }

    std::list<ServedObject<WaitingRecorder>> waiting;
};

} // namespace

TEST_F(ManagerOfManyDevices, AsksSomeAtOnce)
{
    Meeting meeting(3);
    registerRecorders(3, meeting);
    EXPECT_TRUE(QTest::qWaitFor([&] { return meeting.areThere(3); }, 20000));
    meeting.close();
    expectAllAvailable();
}

TEST_F(ManagerOfManyDevices, AsksNoMoreThanSomeAtOnce)
{
    constexpr int most = 32;
    Meeting meeting(most + 1);
    registerRecorders(most + 8, meeting);
    EXPECT_TRUE(QTest::qWaitFor([&] { return meeting.areThere(most); }, 20000));
    EXPECT_EQ(meeting.close(), most);
    expectAllAvailable();
}

TEST_F(ManagerService, ListsTheRecordersThatAreRegistered)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    TQ_KRV::seqString_var devices = manager->getAllDevices();
    ASSERT_EQ(devices->length(), 1u);
    EXPECT_STREQ(devices[0u], "REC1");
}

TEST_F(ManagerService, ServesADeviceWhateverItIsCalled)
{
    const char *const odd = "R@%1%2\"'";
    registerRecorder(odd, CORBA::Object_var(recorder->reference()));
    startManager();
    ASSERT_TRUE(becomesAvailable(odd));
    const QByteArray id = importRecord(QStringLiteral("first.wav"), 100).toLatin1();
    EXPECT_EQ(admin->setRecordComment(odd, id.constData(), L"%1"), 0u);
    const TQ_KRV::struMETA_DATA_var metaData = manager->getMetaDataForRecord(odd, id.constData());
    EXPECT_STREQ(metaData->recordName, L"%1");
    CORBA::String_var channelId;
    const TQ_KRV::IF_KRV_c_Chan_var channel = manager->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "%1 @/\"\xd0\x96", odd,
        TQ_KRV::TCP_IF, "127.0.0.1:9", channelId.out());
    EXPECT_STREQ(CORBA::String_var(channel->getChannelID()), channelId);
    EXPECT_EQ(TQ_KRV::IF_KORVE_Replay_var(manager->getKorveReplayInterface(odd))
                  ->StartReplay(odd, id.constData(), TQ_KRV::drHF_20k, 0, 200, 1),
              902u); // so everything else is fine
}

TEST_F(ManagerService, TellsTheFirmwareOfADevice)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    CORBA::ULong state = 0;
    EXPECT_STREQ(CORBA::String_var(manager->getDeviceInformation("REC1", state)), "KRV#R100#0.1_0.1");
    EXPECT_EQ(state, 1u);
}

TEST_F(ManagerService, MapsDevicesAndAddressesBothWays)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    EXPECT_STREQ(CORBA::String_var(manager->mapDeviceIdToAddress("REC1")), "127.0.0.1");
    EXPECT_STREQ(CORBA::String_var(manager->mapAddressToDeviceId("127.0.0.1")), "REC1");
}

TEST_F(ManagerService, TellsUnknownDevicesAddressesAndRecordsApart)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    EXPECT_EQ(kindRaisedBy([&] { manager->mapDeviceIdToAddress("REC2"); }), Kinds::Invalid_DeviceId);
    EXPECT_EQ(kindRaisedBy([&] { manager->getAllRecords(""); }), Kinds::Invalid_DeviceId);
    EXPECT_EQ(kindRaisedBy([&] { manager->mapAddressToDeviceId("192.0.2.1"); }), Kinds::Invalid_Address);
    EXPECT_EQ(kindRaisedBy([&] { manager->getMetaDataForRecord("REC1", "R0"); }), Kinds::Invalid_RecordId);
    EXPECT_EQ(kindRaisedBy([&] { manager->getMetaDataForRecord("REC2", "R0"); }), Kinds::Invalid_DeviceId);
}

TEST_F(ManagerService, GivesNoRecordsForAnEmptyRecorder)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    EXPECT_EQ(TQ_KRV::seqRECORD_DATA_var(manager->getAllRecords("REC1"))->length(), 0u);
}

TEST_F(ManagerService, GivesTheRecordsAsTheyAreNow)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    const QString id = importRecord(QStringLiteral("first.wav"), 8000);
    importRecord(QStringLiteral("second.wav"), 100);
    TQ_KRV::seqRECORD_DATA_var records = manager->getAllRecords("REC1");
    ASSERT_EQ(records->length(), 2u);
    const TQ_KRV::struRECORD_DATA &first = id == QLatin1String(records[0u].recordID) ? records[0u] : records[1u];
    EXPECT_EQ(first.size, 16000u);
    EXPECT_EQ(first.stopTime - first.startTime, 1000000u);
    EXPECT_EQ(first.dataFormat, TQ_KRV::dfDIGITAL_AUDIO);
}

TEST_F(ManagerService, GivesMetaDataWithTheAddressOfTheDevice)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    const QByteArray id = importRecord(QStringLiteral("first.wav"), 8000).toLatin1();
    const TQ_KRV::struMETA_DATA_var metaData = manager->getMetaDataForRecord("REC1", id.constData());
    EXPECT_STREQ(metaData->recordID, id.constData());
    EXPECT_STREQ(metaData->korveAddress, "127.0.0.1");
    EXPECT_EQ(metaData->size, 16000u);
}

TEST_F(ManagerService, FailsWhenTheRecorderIsGoneAndRecoversWithIt)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    stopRecorder();
    EXPECT_EQ(kindRaisedBy([&] { manager->getAllRecords("REC1"); }), Kinds::Request_Failed);
    EXPECT_TRUE(becomesUnavailable("REC1"));
    startRecorder();
    EXPECT_TRUE(becomesAvailable("REC1"));
    EXPECT_NO_THROW(TQ_KRV::seqRECORD_DATA_var(manager->getAllRecords("REC1")));
}

TEST_F(ManagerService, IsNotHeldUpByARecorderThatIsSilent)
{
    const MutePort silence;
    const QByteArray reference = "corbaloc::1.2@127.0.0.1:" + QByteArray::number(silence.port()) + "/Silent";
    registerRecorder("MUTE", CORBA::Object_var(TestOrb::instance().orb()->string_to_object(reference.constData())));
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    ASSERT_TRUE(becomesUnavailable("MUTE"));
    EXPECT_EQ(kindRaisedBy([&] { manager->getAllRecords("MUTE"); }), Kinds::Request_Failed);
    EXPECT_NO_THROW(TQ_KRV::seqRECORD_DATA_var(manager->getAllRecords("REC1")));
}

TEST_F(ManagerService, TakesARecorderAsAvailableWhoseListComesTooLate)
{
    const auto store = std::make_shared<installation::recorder::StoreThread>(folder.filePath(QStringLiteral("long")));
    const installation::Activation activation(TestOrb::instance().insPoa(), "LONG", new LongList(store));
    registerRecorder("LONG", CORBA::Object_var(activation.reference()));
    startManager();
    EXPECT_TRUE(becomesAvailable("LONG"));
    service.reset();
}

TEST_F(ManagerService, KeepsDevicesAndAddressesOverARestart)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    service.reset();
    stopRecorder();
    cco->UnregisterValues("KorveRecorder/REC1/IF_Control", 0);
    CORBA::release(cco->Unregister("KorveRecorder/REC1/IF_Control", 0));
    startManager();
    EXPECT_STREQ(CORBA::String_var(manager->mapDeviceIdToAddress("REC1")), "127.0.0.1");
    EXPECT_EQ(kindRaisedBy([&] { manager->getAllRecords("REC1"); }), Kinds::Request_Failed);
    CORBA::ULong state = 1;
    EXPECT_STREQ(CORBA::String_var(manager->getDeviceInformation("REC1", state)), "");
    EXPECT_EQ(state, 0u);
}

TEST_F(ManagerService, TellsOfDevicesAsTheyChange)
{
    std::mutex mutex; // the listener is called by the thread of the watch
    std::vector<installation::DeviceList> heard;
    const auto listener = [&](const installation::DeviceList &devices) {
        const std::scoped_lock lock(mutex);
        heard.push_back(devices);
    };
    service.emplace(configuration, TestOrb::instance().insPoa(), cco,
                    installation::ManagerListeners{.devices = listener});
    const auto last = [&](auto holds) {
        return QTest::qWaitFor(
            [&] {
                const std::scoped_lock lock(mutex);
                return !heard.empty() && heard.back().size() == 1 && holds(heard.back().front());
            },
            20000);
    };
    EXPECT_TRUE(
        last([](const installation::Device &device) { return device.available && device.status.totalBytes > 0; }));
    importRecord(QStringLiteral("first.wav"), 10);
    EXPECT_TRUE(last([](const installation::Device &device) { return device.status.recordCount == 1; }));
    stopRecorder();
    EXPECT_TRUE(last([](const installation::Device &device) { return !device.available; }));
    service.reset(); // before what the listener uses
}

TEST_F(ManagerService, TellsItsWorkstationAndItsArchive)
{
    startManager();
    CORBA::String_var host;
    CORBA::UShort port = 1;
    EXPECT_STREQ(CORBA::String_var(manager->getWorkstationName()), "ws1");
    EXPECT_FALSE(manager->getPelinConnectionParameter(host.out(), port));
    EXPECT_STREQ(host, "");
    EXPECT_EQ(port, 0);

    configuration.archive = {QStringLiteral("archive.example"), 4711};
    startManager();
    EXPECT_TRUE(manager->getPelinConnectionParameter(host.out(), port));
    EXPECT_STREQ(host, "archive.example");
    EXPECT_EQ(port, 4711);
}

TEST_F(ManagerService, RefusesWhatItDoesNotServe)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    EXPECT_EQ(kindRaisedBy([&] { manager->cancelExport("1"); }), Kinds::Request_Failed);
    EXPECT_EQ(kindRaisedBy([&] { manager->restorePelinFileGroup("REC2", "", ""); }), Kinds::Invalid_DeviceId);
    EXPECT_EQ(kindRaisedBy([&] { manager->restorePelinFileGroup("REC1", "", "G1"); }), Kinds::Invalid_RecordId);
    EXPECT_EQ(kindRaisedBy([&] { manager->restorePelinFileGroup("REC1", "R1", "G1"); }), Kinds::Request_Failed);
}

TEST_F(ManagerService, ServesChannelsAndReplay)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    CORBA::String_var id;
    const auto nobody = TQ_KRV::IF_KRV_c_ChanMan::_nil();
    const TQ_KRV::IF_KRV_c_Chan_var channel = manager->registerReceiverChannel(
        nobody, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "one", "REC1", TQ_KRV::TCP_IF, "127.0.0.1:9", id.out());
    EXPECT_STREQ(CORBA::String_var(channel->getChannelID()), id);
    const TQ_KRV::IF_KRV_c_Chan_var same = manager->getKorveChannelInterface(id);
    EXPECT_TRUE(same->_is_equivalent(channel));
    EXPECT_TRUE(CORBA::is_nil(TQ_KRV::IF_KRV_c_Chan_var(manager->getKorveChannelInterface("none"))));
    EXPECT_FALSE(CORBA::is_nil(TQ_KRV::IF_KORVE_Replay_var(manager->getKorveReplayInterface("REC1"))));
    EXPECT_TRUE(CORBA::is_nil(TQ_KRV::IF_KORVE_Replay_var(manager->getKorveReplayInterface("REC2"))));
}

TEST_F(ManagerService, RefusesChannelsForNobody)
{
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    CORBA::String_var id;
    const auto nobody = TQ_KRV::IF_KRV_c_ChanMan::_nil();
    EXPECT_THROW(manager->registerChannel(nobody, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "", id.out()),
                 TQ_KRV::exGen);
    EXPECT_THROW(manager->registerChannelEx(nobody, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "", "REC1", id.out()),
                 TQ_KRV::exGen);
}
