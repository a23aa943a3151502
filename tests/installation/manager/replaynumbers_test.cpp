#include "tests/installation/manager/channelfixture.h"

#include "installation/manager/channelfailure.h"

using namespace installation;
using ChanMan = TQ_KRV::IF_KRV_c_ChanMan;

namespace
{

struct Row;

/// With a channel to an address and one with a channel manager, unless a row makes its own.
class ReplayNumbers : public ChannelFixture, public testing::WithParamInterface<Row>
{
public:
    using ChannelFixture::add;
    using ChannelFixture::managerChannel;
    using ChannelFixture::receiverChannel;
    using ChannelFixture::replay;
    using ChannelFixture::startReplay;

    FakeChannelManager &program() { return *peer; }
    SessionRecorder &device() { return *recorder; }
    void dropProgram() { peerActivation.reset(); }
    void hangUp() { receiver.hangUp(); }
    void knowAnotherDevice()
    {
        Device other;
        other.id = QStringLiteral("REC2");
        devices->replace({*devices->find(QStringLiteral("REC1")), other});
    }
    void raise(const char *operation, TQ_KORVE::eKorveKind kind)
    {
        recorder->trouble->plant(operation, [kind] { throw TQ_KORVE::exKorve(kind, "planted"); });
    }
    void raise(const char *operation, LLDCmodule::eLLDCKind kind)
    {
        recorder->trouble->plant(operation, [kind] { throw LLDCmodule::exLLDC(kind, "planted"); });
    }
    void raise(const char *operation, ChanMan::eChanManKind kind)
    {
        peer->trouble.plant(operation, [kind] { throw ChanMan::exChanMan(kind, "planted"); });
    }
    CORBA::ULong startFor(const char *device, const char *record)
    {
        return replay()->StartReplay(device, record, TQ_KRV::drHF_20k, 0, 1000000, 1);
    }
    CORBA::ULong startBy(TQ_KRV::interfaceTypeEnum type)
    {
        return replay()->StartReplayReceivers("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000000, 1, type);
    }
    CORBA::ULong pause() { return replay()->PauseReplay("REC1", "R1"); }
    CORBA::ULong goOn() { return replay()->ContinueReplay("REC1", "R1"); }
    CORBA::ULong stop() { return replay()->StopReplay("REC1", "R1"); }
    /// A replay by the channel manager, that goes on.
    void replayByProgram()
    {
        add(managerChannel());
        ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    }
    ChannelSettings programChannel(TQ_KRV::interfaceTypeEnum type)
    {
        ChannelSettings settings = managerChannel();
        settings.interfaceType = type;
        return settings;
    }
};

struct Row {
    const char *name;
    CORBA::ULong number;
    std::function<CORBA::ULong(ReplayNumbers &)> cause;
    bool leavesRunning = false;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << row.name;
}

std::string rowName(const testing::TestParamInfo<Row> &info)
{
    return info.param.name;
}

auto onReceiver(std::function<CORBA::ULong(ReplayNumbers &)> cause)
{
    return [cause](ReplayNumbers &test) {
        test.add(test.receiverChannel());
        return cause(test);
    };
}

auto onProgram(std::function<CORBA::ULong(ReplayNumbers &)> cause)
{
    return [cause](ReplayNumbers &test) {
        test.add(test.managerChannel());
        return cause(test);
    };
}

auto whileReplaying(std::function<CORBA::ULong(ReplayNumbers &)> cause)
{
    return [cause](ReplayNumbers &test) {
        test.replayByProgram();
        return cause(test);
    };
}

/// A start for which the program behind the channel raises @p kind.
Row programRaises(const char *name, ChanMan::eChanManKind kind)
{
    return {name, 750 + static_cast<CORBA::ULong>(kind), onProgram([kind](ReplayNumbers &test) {
                test.raise("connectForReplay", kind);
                return test.startReplay();
            })};
}

/// A start for which the link of the recorder raises @p kind.
Row linkRaises(const char *name, LLDCmodule::eLLDCKind kind)
{
    return {name, 900 + static_cast<CORBA::ULong>(kind), onReceiver([kind](ReplayNumbers &test) {
                test.raise("startDataTransfer", kind);
                return test.startReplay();
            })};
}

/// A start for which the recorder has no session, but @p kind.
Row deviceRaises(const char *name, CORBA::ULong number, TQ_KORVE::eKorveKind kind)
{
    return {name, number, onReceiver([kind](ReplayNumbers &test) {
                test.raise("getReplaySessionById", kind);
                return test.startReplay();
            })};
}

} // namespace

TEST_P(ReplayNumbers, TellTheCause)
{
    EXPECT_EQ(GetParam().cause(*this), GetParam().number);
    const std::scoped_lock lock(mutex);
    const bool isRunning =
        std::any_of(shown.begin(), shown.end(), [](const Channel &channel) { return !channel.run.isIdle(); });
    EXPECT_EQ(isRunning, GetParam().leavesRunning);
}

INSTANTIATE_TEST_SUITE_P(
    Sections, ReplayNumbers,
    testing::Values(Row{"BothZero", 27, onReceiver([](ReplayNumbers &test) { return test.startReplay(0, 0); })},
                    Row{"Equal", 28, onReceiver([](ReplayNumbers &test) { return test.startReplay(5, 5); })},
                    Row{"Reversed", 29, onReceiver([](ReplayNumbers &test) { return test.startReplay(6, 5); })},
                    Row{"BeyondTheEnd", 10002,
                        onReceiver([](ReplayNumbers &test) { return test.startReplay(0, 1000001); })}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Channels, ReplayNumbers,
    testing::Values(
        Row{"NoneRegistered", 753, [](ReplayNumbers &test) { return test.startReplay(); }},
        Row{"NoneForTheDevice", 753,
            [](ReplayNumbers &test) {
                test.knowAnotherDevice();
                ChannelSettings settings = test.receiverChannel();
                settings.deviceGroups = {{QStringLiteral("REC2")}};
                test.add(settings);
                return test.startReplay();
            }},
        Row{"NoneOfTheInterface", 753, onReceiver([](ReplayNumbers &test) { return test.startBy(TQ_KRV::UDP_IF); })},
        Row{"NoXgInterface", 780, onReceiver([](ReplayNumbers &test) { return test.startBy(TQ_KRV::TQXG_IF); })},
        Row{"NotEnabled", 761,
            [](ReplayNumbers &test) {
                ChannelSettings settings = test.receiverChannel();
                settings.replay = false;
                test.add(settings);
                return test.startReplay();
            }},
        Row{"AllBusy", 752, whileReplaying([](ReplayNumbers &test) {
                test.device().add("R2");
                return test.startFor("REC1", "R2");
            }),
            true}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Recorder, ReplayNumbers,
    testing::Values(
        Row{"UnknownDevice", 769, onReceiver([](ReplayNumbers &test) { return test.startFor("REC9", "R1"); })},
        Row{"NotReachable", 756, onReceiver([](ReplayNumbers &test) {
                test.device().vanish();
                return test.startReplay();
            })},
        Row{"UnknownRecord", 766, onReceiver([](ReplayNumbers &test) { return test.startFor("REC1", "R9"); })},
        Row{"BusyRecord", 768, onReceiver([](ReplayNumbers &test) {
                test.device().record("R1")->become(TQ_KORVE::rsCOPYING);
                return test.startReplay();
            })},
        Row{"AlreadyReplayed", 768, whileReplaying([](ReplayNumbers &test) {
                test.add(test.receiverChannel());
                return test.startReplay();
            }),
            true},
        deviceRaises("StateRefused", 768, TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE),
        deviceRaises("SessionsExhausted", 752, TQ_KORVE::ekRESSOURCES_EXHAUSTED),
        deviceRaises("RecordGoneMeanwhile", 766, TQ_KORVE::ekINVALID_RECORD_ID),
        deviceRaises("RecordCorrupted", 10016, TQ_KORVE::ekRECORD_CORRUPTED)),
    rowName);

INSTANTIATE_TEST_SUITE_P(Link, ReplayNumbers,
                         testing::Values(linkRaises("IllegalIf", LLDCmodule::ekIllegalIf),
                                         linkRaises("WrongSequence", LLDCmodule::ekWrongSequence),
                                         linkRaises("ConnFailed", LLDCmodule::ekConnFailed),
                                         linkRaises("DisconnectFailed", LLDCmodule::ekDisconnectFailed),
                                         linkRaises("DataStreamUnavailable", LLDCmodule::ekDataStreamUnavailable),
                                         linkRaises("IfError", LLDCmodule::ekIfError),
                                         linkRaises("Unknown", LLDCmodule::ekUnknown),
                                         linkRaises("DataRateUnavailable", LLDCmodule::ekDataRateUnavailable),
                                         Row{"InterfaceThatTheRecorderHasNot", 900,
                                             [](ReplayNumbers &test) {
                                                 test.add(test.programChannel(TQ_KRV::FPDP_SERIAL_IF));
                                                 return test.startReplay();
                                             }},
                                         Row{"NobodyListens", 902, onReceiver([](ReplayNumbers &test) {
                                                 test.hangUp();
                                                 return test.startReplay();
                                             })}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(ChannelManager, ReplayNumbers,
                         testing::Values(programRaises("IpcNotStarted", ChanMan::IPC_Not_Started),
                                         programRaises("IpcNotStopped", ChanMan::IPC_Not_Stopped),
                                         programRaises("ResourceFault", ChanMan::Resource_Fault),
                                         programRaises("ChannelUnknown", ChanMan::Channel_Unknown),
                                         programRaises("UnableToStart", ChanMan::Unable_To_Start_DataFlow),
                                         programRaises("NotActive", ChanMan::Channel_Not_Active),
                                         programRaises("UnableToConnect", ChanMan::Unable_To_Connect),
                                         programRaises("UnableToDisconnect", ChanMan::Unable_To_Disconnect),
                                         programRaises("Fault", ChanMan::Fault),
                                         Row{"NotAvailable", 755, onProgram([](ReplayNumbers &test) {
                                                 test.program().answer("isAvailableForReplay", false);
                                                 return test.startReplay();
                                             })},
                                         Row{"DoesNotConnect", 756, onProgram([](ReplayNumbers &test) {
                                                 test.program().answer("connectForReplay", false);
                                                 return test.startReplay();
                                             })},
                                         Row{"DoesNotTakeTheData", 754, onProgram([](ReplayNumbers &test) {
                                                 test.raise("DataTransferStarted", ChanMan::Unable_To_Start_DataFlow);
                                                 return test.startReplay();
                                             })},
                                         Row{"XgDoesNotStart", 754,
                                             [](ReplayNumbers &test) {
                                                 test.add(test.programChannel(TQ_KRV::TQXG_IF));
                                                 test.program().answer("startXgReplay", false);
                                                 return test.startReplay();
                                             }},
                                         Row{"Gone", 770, onProgram([](ReplayNumbers &test) {
                                                 test.dropProgram();
                                                 return test.startReplay();
                                             })}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(
    Pause, ReplayNumbers,
    testing::Values(Row{"PauseOfNothing", 771, onReceiver([](ReplayNumbers &test) { return test.pause(); })},
                    Row{"PauseTwice", 771, whileReplaying([](ReplayNumbers &test) {
                            EXPECT_EQ(test.pause(), 0u);
                            return test.pause();
                        }),
                        true},
                    Row{"PauseOfALinkThatIsNot", 771, whileReplaying([](ReplayNumbers &test) {
                            test.raise("stopDataTransfer", LLDCmodule::ekWrongSequence);
                            return test.pause();
                        }),
                        true},
                    Row{"ContinueOfNothing", 767, onReceiver([](ReplayNumbers &test) { return test.goOn(); })},
                    Row{"ContinueWhileRunning", 767, whileReplaying([](ReplayNumbers &test) { return test.goOn(); }),
                        true},
                    Row{"ContinueWithoutReceiver", 767, whileReplaying([](ReplayNumbers &test) {
                            EXPECT_EQ(test.pause(), 0u);
                            test.raise("startDataTransfer", LLDCmodule::ekDataStreamUnavailable);
                            return test.goOn();
                        }),
                        true},
                    Row{"ContinueWithoutLink", 901, whileReplaying([](ReplayNumbers &test) {
                            EXPECT_EQ(test.pause(), 0u);
                            test.raise("startDataTransfer", LLDCmodule::ekWrongSequence);
                            return test.goOn();
                        }),
                        true}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Stop, ReplayNumbers,
    testing::Values(Row{"StopOfNothing", 760, onReceiver([](ReplayNumbers &test) { return test.stop(); })},
                    Row{"StopOfUnknownDevice", 756,
                        [](ReplayNumbers &test) { return test.replay()->StopReplay("REC9", "R1"); }},
                    Row{"ProgramDoesNotStop", 751, whileReplaying([](ReplayNumbers &test) {
                            test.raise("stoppingDataTransfer", ChanMan::IPC_Not_Stopped);
                            return test.stop();
                        })},
                    Row{"ProgramDoesNotDisconnect", 757, whileReplaying([](ReplayNumbers &test) {
                            test.raise("disconnect", ChanMan::Unable_To_Disconnect);
                            return test.stop();
                        })},
                    Row{"XgDoesNotStop", 757,
                        [](ReplayNumbers &test) {
                            test.add(test.programChannel(TQ_KRV::TQXG_IF));
                            test.program().answer("stopXgReplay", false);
                            EXPECT_EQ(test.startReplay(), 0u);
                            return test.stop();
                        }},
                    Row{"LinkDoesNotClose", 903, whileReplaying([](ReplayNumbers &test) {
                            test.raise("endConnection", LLDCmodule::ekDisconnectFailed);
                            return test.stop();
                        })},
                    Row{"RecorderGone", 756, whileReplaying([](ReplayNumbers &test) {
                            test.device().trouble->plant("endConnection",
                                                         [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
                            return test.stop();
                        }),
                        true}),
    rowName);

TEST(FailureNumbers, HaveAKindOfChannelFailureEach)
{
    using Kind = TQ_KRV::IF_KRV_c_Chan;
    EXPECT_EQ(kindOf(failure::noCapacity), Kind::No_Capacity_On_Korve);
    EXPECT_EQ(kindOf(failure::invalidDevice), Kind::Invalid_DeviceId);
    EXPECT_EQ(kindOf(failure::noDevice), Kind::Invalid_DeviceId);
    EXPECT_EQ(kindOf(failure::outOfRange), Kind::Range_Error);
    EXPECT_EQ(kindOf(failure::channelNotActive), Kind::Channel_Is_Not_Active);
    EXPECT_EQ(kindOf(10010), Kind::Channel_Is_Not_Active);
}
