#include "tests/installation/manager/channelfixture.h"
#include "tests/support/waiting.h"

#include "installation/manager/database.h"

#include <QtTest/QTest>

#include <algorithm>

using namespace installation;

namespace
{

constexpr const char *newRecord = "FakeRecorder-new"; // what the recorder calls it

/// A recording of datagrams, which nobody but its session ends, and a recorder that is away when its channel lets it go.
class LeftRecording : public ChannelFixture
{
protected:
    LeftRecording()
    {
        ChannelSettings settings = receiverChannel();
        settings.interfaceType = TQ_KRV::UDP_IF;
        id = add(settings);
        object(id)->startRecording(0, L"", 0);
        for (const char *operation : {"getMetaData", "endRecordingSession"})
            recorder->trouble->plant(operation, [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    }
    TQ_KRV::IF_KRV_c_Chan_var object(const QString &channelId) { return service->channel(channelId); }
    void recorderComesBack()
    {
        for (const char *operation : {"getMetaData", "endRecordingSession"})
            recorder->trouble->plant(operation, {});
    }
    /// Waits, bounded, until the recorder has been asked so many times more.
    bool isAsked(int times)
    {
        const auto asked = [this] { return std::ranges::count(recorder->trouble->calls(), "getMetaData"); };
        const auto before = asked();
        return QTest::qWaitFor([&] { return asked() >= before + times; }, patienceMs);
    }

    QString id;
};

} // namespace

TEST_F(LeftRecording, OfASourceThatEndedEndsWhenTheRecorderIsBack)
{
    object(id)->DataTransferStopped();
    EXPECT_TRUE(channel(id).run.isIdle());
    EXPECT_TRUE(isAsked(3)); // again and again
    EXPECT_EQ(recorder->record(newRecord)->statusNow(), TQ_KORVE::rsRECORDING);
    recorderComesBack();
    EXPECT_TRUE(becomesStatus(newRecord, TQ_KORVE::rsIDLE));
}

TEST_F(LeftRecording, OfAChannelThatIsGoneEndsWhenTheRecorderIsBack)
{
    object(id)->removeChannelForced();
    EXPECT_TRUE(CORBA::is_nil(object(id)));
    recorderComesBack();
    EXPECT_TRUE(becomesStatus(newRecord, TQ_KORVE::rsIDLE));
}

TEST_F(LeftRecording, IsEndedByTheNextManager)
{
    object(id)->removeChannelForced();
    restartService();
    recorderComesBack();
    EXPECT_TRUE(becomesStatus(newRecord, TQ_KORVE::rsIDLE));
}

TEST_F(LeftRecording, IsEndedAlsoBeforeItsFirstSample)
{
    object(id)->removeChannelForced();
    recorder->record(newRecord)->become(TQ_KORVE::rsREADY_FOR_RECORDING);
    recorderComesBack();
    EXPECT_TRUE(becomesStatus(newRecord, TQ_KORVE::rsIDLE));
}

TEST_F(LeftRecording, IsNotGivenUpWhenTheRecorderCannotTellOfIt)
{
    recorder->trouble->plant("getMetaData", [] { throw TQ_KORVE::exKorve(TQ_KORVE::ekMASS_STORAGE_TOO_SLOW, "slow"); });
    object(id)->removeChannelForced();
    EXPECT_TRUE(isAsked(3));
    recorderComesBack();
    EXPECT_TRUE(becomesStatus(newRecord, TQ_KORVE::rsIDLE));
}

TEST_F(LeftRecording, IsForgottenWhenItHasEnded)
{
    object(id)->removeChannelForced();
    recorder->record(newRecord)->become(TQ_KORVE::rsIDLE);
    recorderComesBack();
    const auto left = [this] {
        const Database database(folder.filePath(QStringLiteral("leftrecordings.sqlite")));
        return database.number(QStringLiteral("SELECT count(*) FROM recording"));
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return left() == 0; }, patienceMs));
    EXPECT_EQ(std::ranges::count(recorder->trouble->calls(), "endRecordingSession"), 1); // and that was in vain
}
