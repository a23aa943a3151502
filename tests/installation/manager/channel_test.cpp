#include "tests/installation/manager/channelfixture.h"
#include "tests/installation/manager/raisedkind.h"

#include "installation/manager/channelmanager.h"
#include "installation/manager/database.h"
#include "tests/installation/cco/testorb.h"

#include <future>
#include <latch>

using namespace installation;
using testing::Contains;
using Chan = TQ_KRV::IF_KRV_c_Chan;

namespace
{

class ChannelTest : public ChannelFixture
{
protected:
    TQ_KRV::IF_KRV_c_Chan_var object(const QString &id) { return service->channel(id); }
    int refusal(const std::function<void(ChannelSettings &)> &edit)
    {
        ChannelSettings settings = receiverChannel();
        edit(settings);
        return kindRaisedBy<TQ_KRV::exGen>([&] { add(settings); });
    }
    ChannelList list()
    {
        const std::scoped_lock lock(mutex);
        return shown;
    }
    ChannelSettings ofAnotherProgram(ChannelSettings settings)
    {
        settings.channelManager = textOfReference(CORBA::Object_var(recorder->reference())); // any other object
        return settings;
    }
    /// The ids, in their order; an empty one where it is refused.
    std::vector<QString> addAtOnce(const std::vector<ChannelSettings> &all)
    {
        std::latch ready(static_cast<std::ptrdiff_t>(all.size()));
        std::vector<std::future<QString>> adding;
        for (const ChannelSettings &settings : all)
            adding.push_back(std::async(std::launch::async, [&] {
                ready.arrive_and_wait();
                try {
                    return add(settings);
                } catch (const TQ_KRV::exGen &) {
                    return QString();
                }
            }));
        std::vector<QString> ids;
        for (auto &one : adding)
            ids.push_back(one.get());
        return ids;
    }
};

struct Refused {
    const char *name;
    TQ_KRV::eGenKind kind;
    std::function<void(ChannelSettings &)> edit;
};

class Registration : public ChannelTest, public testing::WithParamInterface<Refused>
{
};

} // namespace

TEST_P(Registration, IsRefused)
{
    EXPECT_EQ(refusal(GetParam().edit), GetParam().kind);
    EXPECT_TRUE(list().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Registration,
    testing::Values(
        Refused{"Nobody", TQ_KRV::Invalid_Interface, [](ChannelSettings &s) { s.receiverAddress.clear(); }},
        Refused{"NoPort", TQ_KRV::Invalid_Interface, [](ChannelSettings &s) { s.receiverAddress = "127.0.0.1"; }},
        Refused{"PortZero", TQ_KRV::Invalid_Interface, [](ChannelSettings &s) { s.receiverAddress = "127.0.0.1:0"; }},
        Refused{"PortTooBig", TQ_KRV::Invalid_Interface,
                [](ChannelSettings &s) { s.receiverAddress = "127.0.0.1:65536"; }},
        Refused{"NoAddress", TQ_KRV::Invalid_Interface, [](ChannelSettings &s) { s.receiverAddress = "host:80"; }},
        Refused{"XgAlone", TQ_KRV::Invalid_Interface, [](ChannelSettings &s) { s.interfaceType = TQ_KRV::TQXG_IF; }},
        Refused{"RateWithoutDevice", TQ_KRV::DataRateClass_Unknown,
                [](ChannelSettings &s) { s.rate = TQ_KRV::drVUHF_60M; }},
        Refused{"RateTooHigh", TQ_KRV::DataRateClass_Unknown, [](ChannelSettings &s) { s.sampleRate = 1ull << 32; }},
        Refused{"NoStream", TQ_KRV::DataFormat_Unknown, [](ChannelSettings &s) { s.format = TQ_KRV::dfIMAGE; }},
        Refused{"SampleTooLarge", TQ_KRV::DataFormat_Unknown, [](ChannelSettings &s) { s.sampleBytes = 17; }},
        Refused{"UnknownDevice", TQ_KRV::No_Korve_Device_Available,
                [](ChannelSettings &s) { s.deviceGroups = {{QStringLiteral("REC9")}}; }}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(ChannelTest, NeedsADevice)
{
    devices->replace({});
    EXPECT_EQ(refusal([](ChannelSettings &) {}), TQ_KRV::No_Korve_Device_Available);
}

TEST_F(ChannelTest, IsOneOfSoManyAsCanBe)
{
    ChannelSettings settings = receiverChannel();
    settings.name.clear();
    for (std::size_t count = 0; count < ChannelDirectory::maximumChannels; ++count)
        add(settings);
    EXPECT_EQ(kindRaisedBy<TQ_KRV::exGen>([&] { add(settings); }), TQ_KRV::Maximum_Number_Channels_Reached);
}

TEST_F(ChannelTest, IsTheSameForTheSameEndpoint)
{
    ChannelSettings settings = receiverChannel();
    const QString id = add(settings);
    settings.replay = false;
    EXPECT_EQ(add(settings), id);
    EXPECT_FALSE(channel(id).settings.replay);
    settings.name = QStringLiteral("another");
    EXPECT_NE(add(settings), id);
}

TEST_F(ChannelTest, IsTheSameWhileItReplays)
{
    ChannelSettings settings = receiverChannel();
    const QString id = add(settings);
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    settings.sampleRate = 8000;
    EXPECT_EQ(add(settings), id);
    EXPECT_EQ(channel(id).settings.sampleRate, 8000u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
}

TEST_F(ChannelTest, IsNotForAnotherProgram)
{
    const ChannelSettings settings = managerChannel();
    const QString id = add(settings);
    EXPECT_EQ(kindRaisedBy<TQ_KRV::exGen>([&] { add(ofAnotherProgram(settings)); }), TQ_KRV::Invalid_Interface);
    EXPECT_EQ(channel(id).settings, settings);
}

TEST_F(ChannelTest, IsTheSameForAllWhoAskAtATime)
{
    const std::vector<QString> ids = addAtOnce(std::vector<ChannelSettings>(8, receiverChannel()));
    EXPECT_EQ(list().size(), 1u);
    EXPECT_THAT(ids, testing::Each(list().front().id));
}

TEST_F(ChannelTest, IsTakenOverByOneOfTwoAtATime)
{
    const ChannelSettings settings = managerChannel();
    ChannelSettings old = settings;
    old.channelManager = textOfReference(CORBA::Object_var(TestOrb::instance().insPoa()->create_reference_with_id(
        PortableServer::ObjectId_var(PortableServer::string_to_ObjectId("gone")), "IDL:omg.org/CORBA/Object:1.0")));
    const QString id = add(old);
    const std::vector<QString> ids = addAtOnce({settings, ofAnotherProgram(settings)});
    EXPECT_THAT(ids, testing::UnorderedElementsAre(id, QString())); // the other one is refused
    EXPECT_EQ(list().size(), 1u);
}

TEST_F(ChannelTest, GetsNoNameThatAnotherOneHas)
{
    ChannelSettings settings = managerChannel();
    add(settings);
    settings.name = QStringLiteral("other");
    const QString id = add(settings);
    EXPECT_THROW(object(id)->setName("managed"), CORBA::BAD_PARAM);
    EXPECT_EQ(channel(id).settings.name, QStringLiteral("other"));
    EXPECT_NO_THROW(object(id)->setName(""));
}

TEST_F(ChannelTest, IsTakenOverFromAProgramThatHasGone)
{
    ChannelSettings settings = managerChannel();
    const QString id = add(settings);
    settings = ofAnotherProgram(settings);
    peerActivation.reset();
    EXPECT_EQ(add(settings), id);
    EXPECT_EQ(channel(id).settings, settings);
}

TEST_F(ChannelTest, IsThereAgainWhenTheManagerHasStartedAgain)
{
    ChannelSettings settings = managerChannel();
    settings.interfaceType = TQ_KRV::UDP_IF;
    settings.deviceGroups = {{QStringLiteral("REC1")}};
    settings.sampleRate = 4000000000u;
    settings.additionalRate = TQ_KRV::drVUHF_20M;
    const QString id = add(settings);
    restartService();
    EXPECT_EQ(channel(id).settings, settings);
    EXPECT_STREQ(CORBA::String_var(object(id)->getChannelID()), id.toUtf8().constData());
    EXPECT_THAT(peer->trouble.calls(), Contains("goingDown"));
}

TEST_F(ChannelTest, StaysAsItIsWhenItCannotBeKept)
{
    const QString id = add(receiverChannel());
    const ChannelSettings before = channel(id).settings;
    Database(folder.filePath(QStringLiteral("channels.sqlite"))).run(QStringLiteral("DROP TABLE channel"));
    EXPECT_THROW(object(id)->setName("renamed"), CORBA::PERSIST_STORE);
    EXPECT_THROW(object(id)->removeChannel(), CORBA::PERSIST_STORE);
    EXPECT_THROW(add(managerChannel()), CORBA::PERSIST_STORE);
    EXPECT_EQ(channel(id).settings, before);
    EXPECT_EQ(list().size(), 1u);
    EXPECT_EQ(startReplay(0, 1000, 0), 0u);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
}

TEST_F(ChannelTest, NeverGetsAnIdForTheSecondTime)
{
    const QString id = add(receiverChannel());
    object(id)->removeChannel();
    restartService();
    EXPECT_NE(add(receiverChannel()), id);
}

TEST_F(ChannelTest, CanBeSetUp)
{
    const QString id = add(managerChannel());
    const auto set = object(id);
    set->setDataRateClass(TQ_KRV::drVUHF_20M);
    set->setAdditionalDataRateClass();
    set->setDataRateClass(TQ_KRV::drHF_4M);
    set->setDataFormat(TQ_KRV::dfDIGITAL_AUDIO);
    set->setRequestedSampleRate(8000, 2);
    set->setName("renamed");
    set->setRecordFlag(false);
    set->setReplayFlag(false);
    const ChannelSettings settings = channel(id).settings;
    EXPECT_EQ(settings.rate, TQ_KRV::drHF_4M);
    EXPECT_EQ(settings.additionalRate, TQ_KRV::drVUHF_20M);
    EXPECT_EQ(settings.format, TQ_KRV::dfDIGITAL_AUDIO);
    EXPECT_EQ(settings.sampleRate, 8000u);
    EXPECT_EQ(settings.name, QStringLiteral("renamed"));
    EXPECT_FALSE(settings.record);
    EXPECT_FALSE(settings.replay);
}

TEST_F(ChannelTest, KeepsWhatItHasWhenASettingIsRefused)
{
    const QString id = add(managerChannel());
    const ChannelSettings before = channel(id).settings;
    const auto set = object(id);
    using Gen = TQ_KRV::exGen;
    EXPECT_EQ(kindRaisedBy<Gen>([&] { set->setDataRateClass(TQ_KRV::drHF_8M); }), TQ_KRV::DataRateClass_Unknown);
    EXPECT_EQ(kindRaisedBy<Gen>([&] { set->setDataFormat(TQ_KRV::dfIMAGE); }), TQ_KRV::DataFormat_Unknown);
    EXPECT_EQ(kindRaisedBy<Gen>([&] { set->setRequestedSampleRate(1ull << 32, 0); }), TQ_KRV::DataRateClass_Unknown);
    EXPECT_EQ(kindRaisedBy<Gen>([&] { set->setCallBackInterface(TQ_KRV::IF_KRV_c_ChanMan::_nil()); }),
              TQ_KRV::Invalid_Interface);
    EXPECT_EQ(kindRaisedBy<Gen>([&] { set->setPELINRegistration(true, false); }), TQ_KRV::Invalid_Interface);
    EXPECT_NO_THROW(set->setPELINRegistration(false, false));
    EXPECT_EQ(channel(id).settings, before);
}

TEST_F(ChannelTest, RegistersAtAnArchiveThatThereIs)
{
    configuration.archive = {QStringLiteral("archive.example"), 4711};
    restartService();
    const QString id = add(receiverChannel());
    object(id)->setPELINRegistration(true, true);
    EXPECT_TRUE(channel(id).settings.registersAtArchive);
    EXPECT_TRUE(channel(id).settings.forcesRegistration);
}

TEST_F(ChannelTest, KnowsWhichDevicesItMayUse)
{
    const QString id = add(receiverChannel());
    TQ_KRV::seqStringList groups;
    groups.length(1);
    groups[0].length(1);
    groups[0][0] = CORBA::string_dup("REC9");
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { object(id)->setKorveDevices(groups); }), Chan::Invalid_DeviceId);
    groups[0][0] = CORBA::string_dup("REC1");
    object(id)->setKorveDevices(groups);
    EXPECT_EQ(channel(id).settings.devices(), QStringList(QStringLiteral("REC1")));
}

TEST_F(ChannelTest, KeepsItsFlagAndDevicesWhileItReplays)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    const auto set = object(id);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->setReplayFlag(false); }), Chan::Channel_Is_Replaying);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->setKorveDevices({}); }), Chan::Channel_Is_Replaying);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->startRecording(0, L"", 0); }), Chan::Channel_Is_Replaying);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->stopRecording(L""); }), Chan::Channel_Is_Replaying);
    EXPECT_NO_THROW(set->setRecordFlag(false));
}

TEST_F(ChannelTest, KeepsItsFlagAndDevicesWhileItRecords)
{
    const QString id = add(receiverChannel());
    const auto set = object(id);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->stopRecording(L""); }), Chan::Channel_Is_Not_Active);
    set->startRecording(0, L"", 0);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->setRecordFlag(false); }), Chan::Channel_Is_Recording);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { set->setKorveDevices({}); }), Chan::Channel_Is_Recording);
    EXPECT_NO_THROW(set->setReplayFlag(false));
}

TEST_F(ChannelTest, IsNotRemovedWhileItReplays)
{
    const QString id = add(managerChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    object(id)->removeChannel();
    EXPECT_EQ(channel(id).error.code, 850u);
    object(id)->removeChannelForced();
    EXPECT_TRUE(list().empty());
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
    EXPECT_THAT(peer->trouble.calls(), Contains("ChannelRemoved"));
    EXPECT_TRUE(CORBA::is_nil(object(id)));
}

TEST_F(ChannelTest, ReplaysByItself)
{
    const QString id = add(receiverChannel());
    object(id)->startReplaying("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000, 0);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    object(id)->DataTransferStopped();
    EXPECT_TRUE(channel(id).run.isIdle());
    object(id)->startReplaying("REC1", "R9", TQ_KRV::drHF_20k, 0, 1000, 0);
    EXPECT_EQ(channel(id).error.code, 766u);
}

TEST_F(ChannelTest, SaysWhenNobodyKnowsWhetherItReplays)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("startDataTransfer", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    recorder->trouble->plant("endReplaySession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_THROW(object(id)->startReplaying("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000, 0), CORBA::COMM_FAILURE);
    EXPECT_EQ(channel(id).error.code, 756u);
}

TEST_F(ChannelTest, ReplaysOnNoOtherChannel)
{
    const QString other = add(receiverChannel());
    ChannelSettings settings = receiverChannel();
    settings.name = QStringLiteral("second");
    const QString id = add(settings);
    object(id)->startReplaying("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000, 0);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    EXPECT_TRUE(channel(other).run.isIdle());
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    object(id)->setReplayFlag(false);
    object(id)->startReplaying("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000, 0);
    EXPECT_EQ(channel(id).error.code, 761u);
    EXPECT_TRUE(channel(other).run.isIdle());
}

TEST_F(ChannelTest, ShowsTheLastFailureWhileOtherCommandsSucceed)
{
    const QString id = add(receiverChannel());
    object(id)->startReplaying("REC1", "R9", TQ_KRV::drHF_20k, 0, 1000, 0);
    const CommandError error = channel(id).error;
    ASSERT_EQ(error.code, 766u);
    object(id)->startReplaying("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000, 0);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).error, error);
}

TEST_F(ChannelTest, ShowsWhatItsProgramReports)
{
    const QString id = add(managerChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    object(id)->channelError("a cable is loose");
    EXPECT_EQ(channel(id).error.code, 758u);
    EXPECT_EQ(channel(id).error.text, QStringLiteral("a cable is loose"));
    EXPECT_FALSE(channel(id).run.isIdle());
    object(id)->errorOccured(TQ_KRV::cfSTART_DATA_TRANSFER_FAILED);
    EXPECT_EQ(channel(id).error.code, 754u);
    EXPECT_TRUE(channel(id).run.isIdle());
}

TEST_F(ChannelTest, IsNotHeldUpByAProgramThatHangs)
{
    std::mutex hanging;
    std::unique_lock hold(hanging);
    peer->trouble.plant("isAvailableForReplay", [&] { const std::scoped_lock wait(hanging); });
    const QString managed = add(managerChannel());
    std::thread stuck([&] { startReplay(); });
    ASSERT_TRUE(becomes(managed, State::ReplayStarting));
    recorder->add("R2");
    const QString id = add(receiverChannel());
    EXPECT_EQ(replay()->StartReplay("REC1", "R2", TQ_KRV::drHF_20k, 0, 1000000, 1), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    EXPECT_EQ(replay()->StopReplay("REC1", "R2"), 0u);
    hold.unlock();
    stuck.join();
}
