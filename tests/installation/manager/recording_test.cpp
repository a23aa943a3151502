#include "tests/installation/manager/channelfixture.h"
#include "tests/support/waiting.h"

#include <QtTest/QTest>

#include <algorithm>

using namespace installation;
using testing::Contains;
using testing::Not;
using ChanMan = TQ_KRV::IF_KRV_c_ChanMan;
using Chan = TQ_KRV::IF_KRV_c_Chan;

namespace
{

constexpr const char *newRecord = "FakeRecorder-new"; // what the recorder calls it

class Recording : public ChannelFixture
{
protected:
    TQ_KRV::IF_KRV_c_Chan_var object(const QString &id) { return service->channel(id); }
    /// As "REC2", behind "REC1".
    void knowAlso(const SessionRecorder &second)
    {
        const Device first = *devices->find(QStringLiteral("REC1"));
        Device other = first;
        other.id = QStringLiteral("REC2");
        other.control = second.reference();
        devices->replace({first, other});
    }
    void nameSource(CORBA::ULong interfaces, CORBA::ULong ids)
    {
        peer->sources.length(interfaces);
        for (CORBA::ULong position = 0; position < interfaces; ++position)
            peer->sources[position] = {TQ_KRV::TCP_IF, 0x7f000001, 5000, 100000000};
        peer->sourceIds.length(ids);
    }
    /// The number that is shown with the channel when a start fails.
    CORBA::ULong failedStart(const QString &id, Chan::eChanKind kind)
    {
        try {
            object(id)->startRecording(0, L"", 0);
            ADD_FAILURE() << "it was started";
        } catch (const Chan::exChan &failure) {
            EXPECT_EQ(failure.kind, kind);
        }
        EXPECT_TRUE(channel(id).run.isIdle());
        return channel(id).error.code;
    }
};

} // namespace

TEST_F(Recording, ConnectsTheRecorderToTheAddressOfTheChannel)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"evening", 0);
    EXPECT_EQ(channel(id).run.state, State::Recording);
    EXPECT_EQ(channel(id).run.recordId, QLatin1String(newRecord));
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsRECORDING);
    EXPECT_EQ(recorder->record(newRecord)->name, "evening");
    EXPECT_THAT(recorder->trouble->calls(), Contains("connectToIf"));
}

TEST_F(Recording, EndsWithAComment)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    object(id)->stopRecording(L"enough");
    EXPECT_TRUE(channel(id).run.isIdle());
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsIDLE);
    EXPECT_EQ(recorder->record(newRecord)->comment, "enough");
}

TEST_F(Recording, EndsAfterItsTime)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 1);
    EXPECT_TRUE(becomes(id, State::Idle));
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Recording, EndsAfterItsTimeWhenTheRecorderAnswersAgain)
{
    const QString id = add(managerChannel());
    for (const char *operation : {"getMetaData", "endRecordingSession"})
        recorder->trouble->plant(operation, [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    object(id)->startRecording(0, L"", 1);
    const quint64 endUs = channel(id).run.startedUs + 1000000;
    ASSERT_TRUE(QTest::qWaitFor([&] { return nowUs() >= endUs; }, patienceMs));
    const auto looks = [this] { return std::ranges::count(recorder->trouble->calls(), "getMetaData"); };
    const auto before = looks();
    ASSERT_TRUE(QTest::qWaitFor([&] { return looks() > before + 3; }, patienceMs));
    EXPECT_THAT(peer->trouble.calls(), Not(Contains("stopDataFlow"))); // again and again
    EXPECT_EQ(channel(id).error.code, 0u);
    for (const char *operation : {"getMetaData", "endRecordingSession"})
        recorder->trouble->plant(operation, {});
    EXPECT_TRUE(becomes(id, State::Idle));
}

TEST_F(Recording, IsOverWhenTheSourceHasEnded)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    recorder->record(newRecord)->become(TQ_KORVE::rsIDLE);
    EXPECT_TRUE(becomes(id, State::Idle));
}

TEST_F(Recording, ConnectsToTheSourceOfTheChannelManager)
{
    const QString id = add(managerChannel());
    nameSource(1, 1);
    object(id)->startRecording(0, L"", 0);
    object(id)->stopRecording(L"");
    EXPECT_THAT(peer->trouble.calls(), testing::ElementsAre("isAvailableForRecord", "connectForRecord", "startDataFlow",
                                                            "stopDataFlow", "disconnect", "RecordingFinished"));
    EXPECT_EQ(peer->finishedRecord, newRecord);
}

TEST_F(Recording, ListensForAChannelManagerWithoutASource)
{
    const QString id = add(managerChannel());
    object(id)->startRecording(0, L"", 0);
    EXPECT_EQ(peer->startedPort, FakeRecordingSession::listeningPort);
    EXPECT_THAT(peer->trouble.calls(), Not(Contains("startDataFlow")));
}

TEST_F(Recording, ListensForDatagrams)
{
    ChannelSettings settings = receiverChannel();
    settings.interfaceType = TQ_KRV::UDP_IF;
    const QString id = add(settings);
    object(id)->startRecording(0, L"", 0);
    EXPECT_THAT(recorder->trouble->calls(), Contains("setupNetworkServerEx"));
    EXPECT_EQ(channel(id).run.state, State::Recording);
}

TEST_F(Recording, EndsWhenTheSourceSaysSo)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    object(id)->DataTransferStopped();
    EXPECT_TRUE(channel(id).run.isIdle());
}

TEST_F(Recording, IsLookedAfterAgainWhenTheManagerHasStartedAgain)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    restartService();
    EXPECT_EQ(channel(id).run.state, State::Recording);
    object(id)->stopRecording(L"later");
    EXPECT_EQ(recorder->record(newRecord)->comment, "later");
}

TEST_F(Recording, IsOverWhenItEndedMeanwhile)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    service.reset();
    recorder->record(newRecord)->become(TQ_KORVE::rsIDLE);
    startService();
    EXPECT_TRUE(becomes(id, State::Idle));
}

TEST_F(Recording, GoesOnWhenTheRecorderCannotBeToldToStop)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    recorder->trouble->plant("endRecordingSession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    EXPECT_THROW(object(id)->stopRecording(L""), CORBA::COMM_FAILURE); // it may have been told
    EXPECT_EQ(channel(id).run.state, State::Recording);
    recorder->trouble->plant("endRecordingSession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_THROW(object(id)->stopRecording(L""), Chan::exChan);
    EXPECT_EQ(channel(id).run.state, State::Recording);
    recorder->trouble->plant("endRecordingSession", {});
    EXPECT_NO_THROW(object(id)->stopRecording(L""));
}

TEST_F(Recording, MayHaveStartedWhenItCannotBeTakenBack)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("connectToIf", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    recorder->trouble->plant("endRecordingSession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_THROW(object(id)->startRecording(0, L"", 0), CORBA::COMM_FAILURE);
    EXPECT_TRUE(channel(id).run.isIdle());
}

TEST_F(Recording, HasNotStartedWhenItsEndIsRefusedAndNothingIsRecorded)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("connectToIf", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    recorder->trouble->plant("endRecordingSession", [this] {
        recorder->record(newRecord)->become(TQ_KORVE::rsIDLE);
        throw TQ_KORVE::exKorve(TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE, "full");
    });
    EXPECT_EQ(failedStart(id, Chan::Invalid_DeviceId), 853u);
}

TEST_F(Recording, KeepsTheCommentWhenItsSourceHasEndedItFirst)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    recorder->trouble->plant("endRecordingSession", [] { throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO); });
    EXPECT_NO_THROW(object(id)->stopRecording(L"enough"));
    EXPECT_EQ(recorder->record(newRecord)->history, "enough");
}

TEST_F(Recording, NeedsAChannelThatIsEnabled)
{
    ChannelSettings settings = receiverChannel();
    settings.record = false;
    EXPECT_EQ(failedStart(add(settings), Chan::Channel_Is_Not_Active), 755u);
}

TEST_F(Recording, NeedsAChannelThatIsFree)
{
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    try {
        object(id)->startRecording(0, L"", 0);
        ADD_FAILURE() << "it was started twice";
    } catch (const Chan::exChan &failure) {
        EXPECT_EQ(failure.kind, Chan::Channel_Is_Recording);
    }
    EXPECT_EQ(startReplay(), 752u);
}

TEST_F(Recording, RefusesALoopThatFitsNowhere)
{
    const QString id = add(receiverChannel());
    try {
        object(id)->startRecording(1025, L"", 0);
        ADD_FAILURE() << "it was started";
    } catch (const Chan::exChan &failure) {
        EXPECT_EQ(failure.kind, Chan::Range_Error);
    }
    EXPECT_EQ(channel(id).error.code, 805u);
    EXPECT_NO_THROW(object(id)->startRecording(1024, L"", 0));
}

TEST_F(Recording, NeedsADeviceThatAnswers)
{
    const QString id = add(receiverChannel());
    recorder->vanish();
    EXPECT_EQ(failedStart(id, Chan::Invalid_DeviceId), 853u);
}

TEST_F(Recording, TakesTheNextDeviceWhenOneIsFull)
{
    const SessionRecorder second("SecondRecorder");
    knowAlso(second);
    recorder->trouble->plant("createRecordingSession",
                             [] { throw TQ_KORVE::exKorve(TQ_KORVE::ekSTORAGE_SUBSYSTEM_FULL, "full"); });
    const QString id = add(receiverChannel());
    object(id)->startRecording(0, L"", 0);
    EXPECT_EQ(channel(id).run.deviceId, QStringLiteral("REC2"));
    object(id)->stopRecording(L"");
    service.reset();
}

TEST_F(Recording, IsUnknownWhenADeviceWentSilentAndNoOtherTakesIt)
{
    SessionRecorder second("SecondRecorder");
    knowAlso(second);
    recorder->trouble->plant("createRecordingSession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    const QString id = add(receiverChannel());
    EXPECT_NO_THROW(object(id)->startRecording(0, L"", 0));
    EXPECT_EQ(channel(id).run.deviceId, QStringLiteral("REC2"));
    object(id)->stopRecording(L"");
    second.vanish();
    EXPECT_THROW(object(id)->startRecording(0, L"", 0), CORBA::COMM_FAILURE);
    EXPECT_TRUE(channel(id).run.isIdle());
    service.reset();
}

TEST_F(Recording, LeavesNoSessionBehindForAnotherDevice)
{
    const SessionRecorder second("SecondRecorder");
    knowAlso(second);
    recorder->trouble->plant("getId", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_EQ(failedStart(add(receiverChannel()), Chan::Invalid_DeviceId), 853u);
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsIDLE);
    EXPECT_THAT(second.trouble->calls(), Not(Contains("createRecordingSession")));
    service.reset();
}

namespace
{

struct DeviceRow {
    const char *name;
    TQ_KORVE::eKorveKind raised;
    CORBA::ULong number;
    Chan::eChanKind kind;
};

class RecordingOnDevice : public Recording, public testing::WithParamInterface<DeviceRow>
{
};

struct ProgramRow {
    const char *name;
    const char *operation;
    ChanMan::eChanManKind raised;
};

class RecordingOfProgram : public Recording, public testing::WithParamInterface<ProgramRow>
{
};

class RecordingOverLink : public Recording, public testing::WithParamInterface<int>
{
};

} // namespace

TEST_P(RecordingOnDevice, TellsWhyThereIsNoSession)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("createRecordingSession", [] { throw TQ_KORVE::exKorve(GetParam().raised, "planted"); });
    EXPECT_EQ(failedStart(id, GetParam().kind), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RecordingOnDevice,
    testing::Values(DeviceRow{"Exhausted", TQ_KORVE::ekRESSOURCES_EXHAUSTED, 803, Chan::No_Capacity_On_Korve},
                    DeviceRow{"NoSpace", TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE, 803, Chan::No_Capacity_On_Korve},
                    DeviceRow{"Full", TQ_KORVE::ekSTORAGE_SUBSYSTEM_FULL, 803, Chan::No_Capacity_On_Korve},
                    DeviceRow{"NoSession", TQ_KORVE::ekSESSION_CREATION_FAILED, 852, Chan::Channel_Is_Not_Active},
                    DeviceRow{"NoRecord", TQ_KORVE::ekRECORD_CREATION_FAILED, 852, Chan::Channel_Is_Not_Active},
                    DeviceRow{"NoRate", TQ_KORVE::ekDATARATE_CLASS_CURRENTLY_NOT_AVAILABLE, 10010,
                              Chan::Channel_Is_Not_Active},
                    DeviceRow{"TooSlow", TQ_KORVE::ekMASS_STORAGE_TOO_SLOW, 10032, Chan::Channel_Is_Not_Active},
                    DeviceRow{"Defect", TQ_KORVE::ekMASS_STORAGE_DEFECT, 10033, Chan::Channel_Is_Not_Active}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_P(RecordingOverLink, TellsWhyThereAreNoData)
{
    const QString id = add(receiverChannel());
    const auto kind = static_cast<LLDCmodule::eLLDCKind>(GetParam());
    recorder->trouble->plant("connectToIf", [kind] { throw LLDCmodule::exLLDC(kind, "planted"); });
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 900u + static_cast<CORBA::ULong>(GetParam()));
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsIDLE);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecordingOverLink, testing::Range(0, 8));

TEST_P(RecordingOfProgram, TellsWhatTheProgramSays)
{
    const QString id = add(managerChannel());
    nameSource(1, 1);
    peer->trouble.plant(GetParam().operation, [] { throw ChanMan::exChanMan(GetParam().raised, "planted"); });
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 750u + static_cast<CORBA::ULong>(GetParam().raised));
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecordingOfProgram,
                         testing::Values(ProgramRow{"ChannelUnknown", "isAvailableForRecord", ChanMan::Channel_Unknown},
                                         ProgramRow{"NotActive", "connectForRecord", ChanMan::Channel_Not_Active},
                                         ProgramRow{"UnableToConnect", "connectForRecord", ChanMan::Unable_To_Connect},
                                         ProgramRow{"UnableToStart", "startDataFlow",
                                                    ChanMan::Unable_To_Start_DataFlow}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(Recording, NeedsAProgramThatIsAvailable)
{
    const QString id = add(managerChannel());
    peer->answer("isAvailableForRecord", false);
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 850u);
}

TEST_F(Recording, NeedsASourceWithAnId)
{
    const QString id = add(managerChannel());
    nameSource(1, 2);
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 854u);
}

TEST_F(Recording, NeedsAProgramThatIsThere)
{
    const QString id = add(managerChannel());
    peerActivation.reset();
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 770u);
}

TEST_F(Recording, NeedsAConnection)
{
    const QString id = add(receiverChannel());
    recorder->refuseConnections();
    EXPECT_EQ(failedStart(id, Chan::Channel_Is_Not_Active), 855u);
}
