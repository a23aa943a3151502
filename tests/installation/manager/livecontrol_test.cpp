#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/livechannelsfixture.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/samplesource.h"
#include "tests/installation/manager/servedobject.h"

#include <array>

using namespace installation;
using testing::Contains;
using Chan = TQ_KRV::IF_KRV_c_Chan;

namespace
{

/// What the owner of a channel may do to it, over a real recorder that has to follow.
class LiveControl : public LiveChannels
{
protected:
    /// A channel that records from a source without end.
    TQ_KRV::IF_KRV_c_Chan_var recording()
    {
        const auto made = registerReceiver(source.address(), 0);
        made->startRecording(1, L"", 0);
        EXPECT_TRUE(sizePasses(0));
        recorded = channel().run.recordId.toLatin1();
        return made;
    }
    TQ_KRV::IF_KRV_c_Chan_var replaying()
    {
        const auto made = registerReceiver(receiver.address(), 0);
        EXPECT_EQ(start(0, size), 0u);
        return made;
    }

    const SampleSource source{1ull << 40};
    QByteArray recorded;
};

struct Fault {
    const char *name;
    TQ_KRV::eCHANNEL_FAULT fault;
    CORBA::ULong number;
};

class LiveFault : public LiveControl, public testing::WithParamInterface<Fault>
{
};

} // namespace

TEST_P(LiveFault, EndsWhatTheRecorderDoes)
{
    const auto made = recording();
    made->errorOccured(GetParam().fault);
    EXPECT_TRUE(channel().run.isIdle());
    EXPECT_EQ(channel().error.code, GetParam().number);
    EXPECT_EQ(status(recorded), TQ_KRV::rsIDLE);
    EXPECT_GT(stored(recorded).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(Faults, LiveFault,
                         testing::Values(Fault{"NoSession", TQ_KRV::cfCREATE_RECORDING_SESSION_FAILED, 852},
                                         Fault{"NotConnected", TQ_KRV::cfCONNECT_TO_IF_FAILED, 756},
                                         Fault{"NoReplaySession", TQ_KRV::cfGET_REPLAY_SESSION_BY_ID_FAILED, 766},
                                         Fault{"NoDataFlow", TQ_KRV::cfSTART_DATA_TRANSFER_FAILED, 754}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(LiveControl, EndsARecordingWithItsData)
{
    const auto made = recording();
    made->DataTransferStarted();
    made->DataTransferStopping();
    EXPECT_EQ(status(recorded), TQ_KRV::rsRECORDING);
    made->DataTransferStopped();
    EXPECT_TRUE(channel().run.isIdle());
    EXPECT_EQ(status(recorded), TQ_KRV::rsIDLE);
}

TEST_F(LiveControl, EndsAReplayWithItsData)
{
    const auto made = replaying();
    made->DataTransferStopped();
    EXPECT_TRUE(channel().run.isIdle());
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveControl, ShowsAnErrorOfTheProgramAndGoesOn)
{
    const auto made = replaying();
    made->channelError("a cable is loose \xf0\x9f\x98\x80");
    EXPECT_EQ(channel().error.code, 758u);
    EXPECT_EQ(channel().error.text, QString::fromUtf8("a cable is loose \xf0\x9f\x98\x80"));
    EXPECT_TRUE(positionPasses(channel().progress.position));
}

TEST_F(LiveControl, LeavesAChannelThatRecordsUnlessForced)
{
    const auto made = recording();
    const QString id = channel().id;
    made->removeChannel();
    EXPECT_TRUE(isThere(id));
    EXPECT_EQ(channel().error.code, 850u);
    EXPECT_EQ(status(recorded), TQ_KRV::rsRECORDING);
    made->removeChannelForced();
    EXPECT_FALSE(isThere(id));
    EXPECT_EQ(status(recorded), TQ_KRV::rsIDLE);
    EXPECT_THROW(made->setName("gone"), CORBA::OBJECT_NOT_EXIST);
}

TEST_F(LiveControl, RemovesAChannelThatDoesNothing)
{
    const auto made = registerReceiver(receiver.address(), 0);
    const QString id = channel().id;
    made->removeChannel();
    EXPECT_FALSE(isThere(id));
    EXPECT_TRUE(CORBA::is_nil(TQ_KRV::IF_KRV_c_Chan_var(manager->getKorveChannelInterface(id.toLatin1().constData()))));
}

TEST_F(LiveControl, KeepsFlagsAndDevicesOfAChannelThatIsBusy)
{
    const auto made = recording();
    TQ_KRV::seqStringList groups(1);
    groups.length(1);
    groups[0].length(1);
    groups[0][0] = CORBA::string_dup("REC1");
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->setRecordFlag(false); }), Chan::Channel_Is_Recording);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->setKorveDevices(groups); }), Chan::Channel_Is_Recording);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->startRecording(0, L"", 0); }), Chan::Channel_Is_Recording);
    made->stopRecording(L"");
    EXPECT_NO_THROW(made->setKorveDevices(groups));
    EXPECT_EQ(channel().settings.devices(), QStringList(QStringLiteral("REC1")));
    groups[0][0] = CORBA::string_dup("REC9");
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->setKorveDevices(groups); }), Chan::Invalid_DeviceId);
    made->startReplaying("REC1", record.constData(), TQ_KRV::drHF_20k, 0, size, 1);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->setReplayFlag(false); }), Chan::Channel_Is_Replaying);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->stopRecording(L""); }), Chan::Channel_Is_Replaying);
}

TEST_F(LiveControl, ReplaysBySayingSoToTheChannel)
{
    const auto made = registerReceiver(receiver.address(), fullSpeed);
    made->startReplaying("REC1", record.constData(), TQ_KRV::drHF_20k, 1000, 3000, 2);
    EXPECT_TRUE(receives(4000));
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(receiver.content(), stored(record).mid(1000, 2000).repeated(2));
    made->startReplaying("REC1", "R0", TQ_KRV::drHF_20k, 0, size, 1);
    EXPECT_EQ(channel().error.code, 766u);
}

TEST_F(LiveControl, RecordsInTheClassAndFormatThatAreSet)
{
    const auto made = registerReceiver(source.address(), 0);
    made->setDataRateClass(TQ_KRV::drVUHF_20M);
    made->setAdditionalDataRateClass();
    made->setDataRateClass(TQ_KRV::drVUHF_1M);
    made->setDataFormat(TQ_KRV::dfRAW);
    made->setRequestedSampleRate(500000, 4);
    made->startRecording(1, L"", 0);
    EXPECT_TRUE(sizePasses(0));
    recorded = channel().run.recordId.toLatin1();
    made->stopRecording(L"");
    const auto data = recordData(recorded);
    EXPECT_EQ(data->dataRate, TQ_KRV::drVUHF_1M);
    EXPECT_EQ(data->dataFormat, TQ_KRV::dfRAW);
    EXPECT_EQ(data->indexEntries[0].sampleRate, 500000u);
}

TEST_F(LiveControl, AsksTheProgramThatItIsGiven)
{
    const ServedObject<FakeChannelManager> program("Program");
    const auto made = registerReceiver(receiver.address(), fullSpeed);
    const CORBA::Object_var object = program.reference();
    made->setCallBackInterface(TQ_KRV::IF_KRV_c_ChanMan::_unchecked_narrow(object));
    EXPECT_EQ(start(0, size), 0u);
    EXPECT_TRUE(receives(size));
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(program->trouble.calls().front(), "isAvailableForReplay");
    EXPECT_THAT(program->trouble.calls(), Contains("disconnect"));
    made->setCallBackInterface(TQ_KRV::IF_KRV_c_ChanMan::_nil()); // the address is left
    EXPECT_EQ(start(0, size), 0u);
    EXPECT_TRUE(receives(2 * size));
    service.reset();
}
