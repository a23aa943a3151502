#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/samplereceiver.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include "korvebase/errordescriptor.h"
#include "orbconnection/vtconnectionobserver.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuenumeric.h"

#include <QtTest/QTest>

namespace
{

/// With the manager's channels mirrored.
class Channels : public InstallationFixture
{
protected:
    Channels()
    {
        EXPECT_TRUE(managerKnowsTheDevice());
        const QString file = writeWavFile(shared->folder.path(), QStringLiteral("channels.wav"), sampleCount);
        EXPECT_EQ(import({file}).exitCode, 0);
        record = recordIds().last().toLatin1();
    }
    ~Channels() override
    {
        const TQ_KRV::IF_KRV_c_KRV_var running = manager();
        const TQ_KRV::IF_KRV_c_Chan_var channel = running->getKorveChannelInterface(id);
        if (!CORBA::is_nil(channel))
            channel->removeChannelForced();
    }

    static VtConnectData managersTree()
    {
        VtConnectData where;
        where.ipAddress = address();
        return where;
    }
    double shownPosition() const
    {
        const QString path = QStringLiteral("/KORVE/Channel/%1/CurrentReplayPosition").arg(QLatin1String(id.in()));
        const auto *const value =
            dynamic_cast<values::ValueNumeric<double> *>(values::Tree::Instance().findValue(path));
        return value && value->GetState() == values::ValueStateValid ? value->GetValue() : 0;
    }
    /// The error of the last command on the channel that failed, or of what ended by itself.
    std::string shownFailure() const
    {
        const QString path = QStringLiteral("/KORVE/Channel/%1/ErrorCode").arg(QLatin1String(id.in()));
        const auto *const value = dynamic_cast<values::Value<QString> *>(values::Tree::Instance().findValue(path));
        const bool isThere = value && value->GetState() == values::ValueStateValid;
        return ErrorDescriptor().GetErrorCode(isThere ? value->GetValue() : QString()).errorCode.toStdString();
    }
    bool positionMoves() const
    {
        const double before = shownPosition();
        return QTest::qWaitFor([&] { return shownPosition() > before; }, patienceMs);
    }
    void registerReceiver()
    {
        const TQ_KRV::IF_KRV_c_KRV_var running = manager();
        const TQ_KRV::IF_KRV_c_Chan_var channel = running->registerReceiverChannel(
            TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "live", "REC1",
            TQ_KRV::TCP_IF, receiver.address().toLatin1().constData(), id.out());
        EXPECT_FALSE(CORBA::is_nil(channel));
    }
    static TQ_KRV::IF_KORVE_Replay_var replay()
    {
        const TQ_KRV::IF_KRV_c_KRV_var running = manager();
        return running->getKorveReplayInterface("REC1");
    }
    /// A manager that has just started finds its recorders first.
    bool stops() const
    {
        return QTest::qWaitFor([&] { return replay()->StopReplay("REC1", record.constData()) == 0; }, patienceMs);
    }

    static constexpr int sampleCount = 800000; // a hundred seconds
    SampleReceiver receiver;
    QByteArray record;
    CORBA::String_var id = CORBA::string_dup("");
    const QString branch = QStringLiteral("/KORVE/Channel");
    VtConnectionObserver mirror{branch, branch, managersTree(), QString()};
};

} // namespace

TEST_F(Channels, ShowWhereAReplayIs)
{
    registerReceiver();
    ASSERT_EQ(replay()->StartReplay("REC1", record.constData(), TQ_KRV::drHF_20k, 0, 2 * sampleCount, 1), 0u);
    EXPECT_TRUE(positionMoves());
    EXPECT_TRUE(positionMoves());
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
}

TEST_F(Channels, ReplayOnWhileTheirManagerIsKilled)
{
    registerReceiver();
    ASSERT_EQ(replay()->StartReplay("REC1", record.constData(), TQ_KRV::drHF_20k, 0, 2 * sampleCount, 1), 0u);
    process("manager")->kill();
    const quint64 before = receiver.bytes();
    EXPECT_TRUE(QTest::qWaitFor([&] { return receiver.bytes() > before; }, patienceMs));
    process("manager") = start("manager");
    ASSERT_TRUE(managerKnowsTheDevice());
    EXPECT_TRUE(positionMoves());
    const TQ_KRV::IF_KRV_c_Chan_var channel = TQ_KRV::IF_KRV_c_KRV_var(manager())->getKorveChannelInterface(id);
    ASSERT_FALSE(CORBA::is_nil(channel));
    EXPECT_STREQ(CORBA::String_var(channel->getChannelID()), id);
    EXPECT_TRUE(stops());
}

TEST_F(Channels, TellOfAReplayThatARestartOfTheRecorderCutsShort)
{
    registerReceiver();
    ASSERT_EQ(replay()->StartReplay("REC1", record.constData(), TQ_KRV::drHF_20k, 0, 2 * sampleCount, 1), 0u);
    ASSERT_TRUE(positionMoves());
    process("recorder")->kill();
    process("recorder") = start("recorder");
    EXPECT_TRUE(QTest::qWaitFor([this] { return shownFailure() == "756"; }, patienceMs)) << shownFailure();
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 760u); // it is over
}
