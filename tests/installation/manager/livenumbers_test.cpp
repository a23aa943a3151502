#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/livechannelsfixture.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/samplesource.h"
#include "tests/installation/manager/servedobject.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

using namespace installation;
using namespace std::chrono_literals;
using Chan = TQ_KRV::IF_KRV_c_Chan;

namespace
{

const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();
constexpr CORBA::ULong inCurrentState = 10019;
constexpr CORBA::ULong tooSlow = 10032;
constexpr std::size_t mostSessions = 16; // of a recorder

/// The store of a recorder stands still over a change of @p record while this lives, as on a disk that hangs: a pipe
/// that nobody reads stands where the new description is to be written.
class StandingStore
{
public:
    StandingStore(TQ_KORVE::IF_Control_ptr control, const QByteArray &record, const QString &recordings)
        : path(QFile::encodeName(recordings + u'/' + QString::fromLatin1(record) + QStringLiteral(".sigmf-meta.part")))
    {
        if (::mkfifo(path.constData(), 0600) != 0)
            throw std::runtime_error("no pipe can be made");
        while (!hasBegun(control, record))
            continue;
    }
    StandingStore(const StandingStore &) = delete;
    ~StandingStore()
    {
        QFile pipe(QFile::decodeName(path));
        if (pipe.open(QIODevice::ReadOnly)) // which lets the store go on
            pipe.readAll();
        ::unlink(path.constData());
    }

private:
    static bool hasBegun(TQ_KORVE::IF_Control_ptr control, const QByteArray &record)
    {
        try {
            control->setRecordComment(record.constData(), TQ_KORVE::wideText());
        } catch (const CORBA::TIMEOUT &) {
            return true;
        } catch (const TQ_KORVE::exKorve &) { // it has been too busy to begin
        }
        return false;
    }

    const QByteArray path;
};

/// Why commands on channels fail, each for its real reason: a real recorder refuses, or it has gone.
class LiveNumbers : public LiveChannels
{
protected:
    CORBA::ULong startOf(const char *device, const QByteArray &id)
    {
        return replay()->StartReplay(device, id.constData(), TQ_KRV::drHF_20k, 0, size, 1);
    }
    TQ_KRV::IF_KRV_c_Chan_var registerProgram(TQ_KRV::interfaceTypeEnum type)
    {
        const CORBA::Object_var object = program->reference();
        CORBA::String_var id;
        return manager->registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan::_unchecked_narrow(object), TQ_KRV::drHF_20k,
                                                TQ_KRV::dfRAW, true, true, "managed", "", type, "", id.out());
    }
    /// The number that the first channel shows when a recording does not begin.
    CORBA::ULong failedRecording(const TQ_KRV::IF_KRV_c_Chan_var &made, Chan::eChanKind kind)
    {
        EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->startRecording(0, L"", 0); }), kind);
        EXPECT_TRUE(channel().run.isIdle());
        return channel().error.code;
    }
    std::size_t recordCount() const { return TQ_KRV::seqRECORD_DATA_var(manager->getAllRecords("REC1"))->length(); }

    std::optional<ServedObject<FakeChannelManager>> program{std::in_place, "Program"};
};

} // namespace

TEST_F(LiveNumbers, TellASectionThatIsNone)
{
    registerReceiver(receiver.address(), 0);
    EXPECT_EQ(start(0, 0), 27u);
    EXPECT_EQ(start(2, 2), 28u);
    EXPECT_EQ(start(4, 2), 29u);
    EXPECT_EQ(start(1, size), 10002u); // within a sample
    EXPECT_EQ(start(0, ~quint64(0)), 10002u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveNumbers, TellThatThereIsNoChannelForAReplay)
{
    EXPECT_EQ(start(0, size), 753u);
    const auto made = registerReceiver(receiver.address(), 0);
    made->setReplayFlag(false);
    EXPECT_EQ(start(0, size), 761u);
    EXPECT_EQ(replay()->StartReplayReceivers("REC1", record.constData(), TQ_KRV::drHF_20k, 0, size, 1, TQ_KRV::TQXG_IF),
              780u);
    made->removeChannel();
    EXPECT_EQ(start(0, size), 753u);
}

TEST_F(LiveNumbers, TellThatAllChannelsAreBusy)
{
    registerReceiver(receiver.address(), 0);
    const QByteArray other = importRecord(QStringLiteral("other.wav"), sampleCount).toLatin1();
    ASSERT_EQ(start(0, size), 0u);
    EXPECT_EQ(startOf("REC1", other), 752u);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
}

TEST_F(LiveNumbers, TellThatTheRecorderHasNoSessionLeft)
{
    registerReceiver(receiver.address(), 0);
    std::vector<QByteArray> others;
    for (std::size_t n = 0; n < mostSessions; ++n) {
        others.push_back(importRecord(QStringLiteral("%1.wav").arg(n), 10).toLatin1());
        TQ_KORVE::IF_ReplaySession_var(control()->getReplaySessionById(others.back().constData(), nobody));
    }
    EXPECT_EQ(start(0, size), 752u);
    control()->setRecordIdle(others.front().constData());
    EXPECT_EQ(start(0, size), 0u);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
}

TEST_F(LiveNumbers, TellThatTheDeviceIsNotThere)
{
    registerReceiver(receiver.address(), 0);
    EXPECT_EQ(startOf("REC9", record), 769u);
    stopRecorder();
    EXPECT_EQ(start(0, size), 756u);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 756u);
    EXPECT_TRUE(channel().run.isIdle());
}

TEST_F(LiveNumbers, TellThatARecordIsReplayedAlready)
{
    registerReceiver(receiver.address(), 0);
    const SampleReceiver second;
    registerReceiver(second.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    EXPECT_EQ(start(0, size), 768u);
    EXPECT_EQ(status(record), TQ_KRV::rsREPLAYING);
    EXPECT_EQ(second.bytes(), 0u);
}

TEST_F(LiveNumbers, TellThatARecordIsStillBeingRecorded)
{
    const SampleSource source(1ull << 40);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(1, L"", 0);
    ASSERT_TRUE(sizePasses(0));
    const QByteArray recorded = channel().run.recordId.toLatin1();
    const auto other = registerReceiver(receiver.address(), 0);
    EXPECT_EQ(startOf("REC1", recorded), 768u);
    EXPECT_FALSE(admin->deleteRecord("REC1", recorded.constData()));
    made->stopRecording(L"");
    EXPECT_EQ(status(recorded), TQ_KRV::rsIDLE);
}

TEST_F(LiveNumbers, TellThatARecordThatPlaysIsNotCopied)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    TQ_KRV::seqCopySection section(1);
    section.length(1);
    section[0] = {0, 20};
    CORBA::String_var copy;
    EXPECT_EQ(admin->copyRecord("REC1", record.constData(), section, L"copy", copy.out()), inCurrentState);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(admin->copyRecord("REC1", record.constData(), section, L"copy", copy.out()), 0u);
}

TEST_F(LiveNumbers, TellThatTheSamplesHaveGone)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_TRUE(QFile::remove(folder.filePath("recorder/recordings/" + record + ".sigmf-data")));
    EXPECT_EQ(start(0, size), 10016u);
    EXPECT_TRUE(channel().run.isIdle());
}

TEST_F(LiveNumbers, TellThatThereIsNothingToControl)
{
    registerReceiver(receiver.address(), 0);
    EXPECT_EQ(replay()->PauseReplay("REC1", record.constData()), 771u);
    EXPECT_EQ(replay()->ContinueReplay("REC1", record.constData()), 767u);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 760u);
    ASSERT_EQ(start(0, size), 0u);
    EXPECT_EQ(replay()->ContinueReplay("REC1", record.constData()), 767u);
    EXPECT_EQ(replay()->PauseReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(replay()->PauseReplay("REC1", record.constData()), 771u);
    control()->setRecordIdle(record.constData()); // somebody else ends it
    EXPECT_EQ(replay()->ContinueReplay("REC1", record.constData()), 767u);
    EXPECT_TRUE(becomes(State::Idle));
}

TEST_F(LiveNumbers, TellAnInterfaceThatTheRecorderHasNot)
{
    registerProgram(TQ_KRV::FPDP_SERIAL_IF);
    EXPECT_EQ(start(0, size), 900u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveNumbers, TellThatTheProgramHasGone)
{
    const auto made = registerProgram(TQ_KRV::TCP_IF);
    program.reset();
    EXPECT_EQ(start(0, size), 770u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
    EXPECT_EQ(failedRecording(made, Chan::Channel_Is_Not_Active), 770u);
}

TEST_F(LiveNumbers, TellWhyARecordingDoesNotBegin)
{
    const auto made = registerReceiver(receiver.address(), 0);
    made->setRecordFlag(false);
    EXPECT_EQ(failedRecording(made, Chan::Channel_Is_Not_Active), 755u);
    made->setRecordFlag(true);
    made->setRequestedSampleRate(300000, 2); // more than its data-rate class has
    EXPECT_EQ(failedRecording(made, Chan::Channel_Is_Not_Active), 907u);
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->startRecording(~0u, L"", 0); }), Chan::Range_Error);
    EXPECT_EQ(channel().error.code, 805u);
    EXPECT_EQ(recordCount(), 1u);
    stopRecorder();
    EXPECT_EQ(failedRecording(made, Chan::Invalid_DeviceId), 853u);
}

TEST_F(LiveNumbers, TellThatTheStoreIsTooSlow)
{
    EXPECT_LT(recorder::RecorderConfiguration().answerLimit, ManagerConfiguration().timing.callLimit);
    const SampleSource source(1000);
    const auto made = registerReceiver(source.address(), 0);
    startRecorder(100ms); // the manager gives up after 500 ms
    const StandingStore standing(control(), record, folder.filePath(QStringLiteral("recorder/recordings")));
    EXPECT_EQ(failedRecording(made, Chan::Channel_Is_Not_Active), tooSlow);
    EXPECT_EQ(admin->setRecordComment("REC1", record.constData(), L"second"), tooSlow);
}

TEST_F(LiveNumbers, TellThatARecordHasNoSampleRate)
{
    registerReceiver(receiver.address(), 0);
    writeFile(folder.filePath("rare.sigmf-meta"), sigmfMeta({{"core:sample_rate", 0.4}}));
    writeFile(folder.filePath("rare.sigmf-data"), QByteArray(400, 'x'));
    const QByteArray rare = recorder->importFile(folder.filePath("rare.sigmf-meta")).toLatin1();
    EXPECT_EQ(replay()->StartReplay("REC1", rare.constData(), TQ_KRV::drHF_20k, 0, 400, 1), 907u);
    EXPECT_EQ(status(rare), TQ_KRV::rsIDLE);
    EXPECT_TRUE(channel().run.isIdle());
}

TEST_F(LiveNumbers, TellThatTheRecorderCannotRecordAnyMore)
{
    const SampleSource source(1000);
    const auto made = registerReceiver(source.address(), 0);
    std::vector<TQ_KORVE::IF_RecordingSession_var> sessions;
    for (std::size_t n = 0; n < mostSessions; ++n)
        sessions.push_back(control()->createRecordingSession(TQ_KORVE::drHF_20k, 0, TQ_KORVE::dfRAW, nobody));
    EXPECT_EQ(failedRecording(made, Chan::No_Capacity_On_Korve), 803u);
    sessions.front()->endRecordingSession(TQ_KORVE::wideText());
    EXPECT_NO_THROW(made->startRecording(0, L"", 0));
    EXPECT_TRUE(becomes(State::Idle));
}
