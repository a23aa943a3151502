#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/livechannelsfixture.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/samplesource.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/samplepeer.h"

#include "tests/installation/cco/testorb.h"

#include "installation/calls/activation.h"

#include <netinet/in.h>

using namespace installation;
using Chan = TQ_KRV::IF_KRV_c_Chan;

namespace
{

constexpr quint64 endless = 1ull << 40;
constexpr CORBA::ULong invalidValue = 10002;

quint16 freePort()
{
    const SamplePeer taken(SamplePeer::Transport::Udp, QStringLiteral("127.0.0.1"));
    return taken.port();
}

/// Channels that record what a source sends.
class LiveRecordings : public LiveChannels
{
protected:
    QByteArray recordId() const { return channel().run.recordId.toLatin1(); }
    /// What the source sent from its begin on, as far as it was stored, which is something.
    void expectBeginOfSource(const QByteArray &id) const
    {
        const QByteArray samples = stored(id);
        EXPECT_GT(samples.size(), 0);
        EXPECT_EQ(samples, SampleSource::content(0, samples.size()));
    }
};

} // namespace

TEST_F(LiveRecordings, KeepWhatASourceHas)
{
    const SampleSource source(10000);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(0, L"evening", 0);
    const QByteArray id = recordId();
    EXPECT_TRUE(becomes(State::Idle)); // with the end of the source
    const auto data = recordData(id);
    EXPECT_EQ(stored(id), SampleSource::content(0, 10000));
    EXPECT_EQ(data->size, 10000u);
    EXPECT_EQ(textOf(data->recordName), QStringLiteral("evening"));
    EXPECT_EQ(data->recordStatus, TQ_KRV::rsIDLE);
    EXPECT_EQ(data->recordingLoopSize, 0u);
}

TEST_F(LiveRecordings, EndWithAComment)
{
    const SampleSource source(endless);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(0, L"", 0);
    EXPECT_TRUE(sizePasses(0));
    const QByteArray id = recordId();
    EXPECT_EQ(status(id), TQ_KRV::rsRECORDING);
    made->stopRecording(L"enough \U0001f4fb");
    EXPECT_EQ(channel().run.state, State::Idle);
    const auto data = recordData(id);
    EXPECT_EQ(data->recordStatus, TQ_KRV::rsIDLE);
    ASSERT_EQ(data->history.length(), 1u);
    EXPECT_EQ(textOf(data->history[0].historyEntry), QString::fromUtf8("enough \xF0\x9F\x93\xBB"));
    expectBeginOfSource(id);
}

TEST_F(LiveRecordings, GoOnWhenTheirCommentIsRefused)
{
    const SampleSource source(endless);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(0, L"", 0);
    EXPECT_TRUE(sizePasses(0));
    const QByteArray id = recordId();
    const std::wstring tooLong(70000, L'x');
    EXPECT_EQ(kindRaisedBy<Chan::exChan>([&] { made->stopRecording(tooLong.c_str()); }), Chan::Channel_Is_Not_Active);
    EXPECT_EQ(channel().error.code, invalidValue);
    EXPECT_EQ(channel().run.state, State::Recording);
    EXPECT_EQ(status(id), TQ_KRV::rsRECORDING);
    made->stopRecording(L"shorter");
    EXPECT_EQ(status(id), TQ_KRV::rsIDLE);
}

TEST_F(LiveRecordings, AsALoopKeepTheLastBytes)
{
    constexpr quint64 mebibyte = 1 << 20;
    constexpr quint64 sent = 3 * mebibyte + 10000;
    const SampleSource source(sent);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(1, L"", 0);
    const QByteArray id = recordId();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(stored(id), SampleSource::content(sent - mebibyte, mebibyte));
    const auto data = recordData(id);
    EXPECT_EQ(data->recordingLoopSize, mebibyte);
    EXPECT_EQ(data->size, mebibyte);
}

TEST_F(LiveRecordings, EndAfterTheirTime)
{
    const SampleSource source(endless);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(1, L"", 1);
    const QByteArray id = recordId();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(status(id), TQ_KRV::rsIDLE);
    EXPECT_EQ(channel().error.code, 0u);
}

TEST_F(LiveRecordings, TellThatTheirSourceHasBroken)
{
    SamplePeer source(SamplePeer::Transport::Tcp, QStringLiteral("127.0.0.1"));
    const auto made = registerReceiver(QStringLiteral("127.0.0.1:%1").arg(source.port()), 0);
    made->startRecording(0, L"", 0);
    const QByteArray id = recordId();
    source.accept().send(SampleSource::content(0, 100000));
    EXPECT_TRUE(sizePasses(0));
    source.reset();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(channel().error.code, 905u);
    EXPECT_TRUE(channel().error.text.contains(QLatin1String("Connection reset"))) << channel().error.text.toStdString();
    expectBeginOfSource(id);
}

TEST_F(LiveRecordings, TellThatTheDiskIsFull)
{
    const FullDisk limit(2 << 20);
    const SampleSource source(endless);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(0, L"", 0);
    const QByteArray id = recordId();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(channel().error.code, 905u);
    EXPECT_TRUE(channel().error.text.contains(QLatin1String("File too large"))) << channel().error.text.toStdString();
    expectBeginOfSource(id);
}

TEST_F(LiveRecordings, TakeDatagrams)
{
    const quint16 port = freePort();
    const auto made = registerReceiver(QStringLiteral("127.0.0.1:%1").arg(port), 0, TQ_KRV::UDP_IF);
    made->startRecording(0, L"", 0);
    const QByteArray id = recordId();
    SamplePeer source(SamplePeer::Transport::Udp, INADDR_LOOPBACK, port);
    source.send(SampleSource::content(0, 1000));
    source.send(SampleSource::content(1000, 1000));
    source.finish();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(stored(id), SampleSource::content(0, 2000));
}

TEST_F(LiveRecordings, AreNamedByAnyLetters)
{
    const SampleSource source(1000);
    const auto made = registerReceiver(source.address(), 0);
    made->startRecording(0, L"%1 @/\"\u0416 \U0001f600", 0);
    const QByteArray id = recordId();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(textOf(recordData(id)->recordName), QString::fromUtf8("%1 @/\"\xD0\x96 \xF0\x9F\x98\x80"));
}

TEST_F(LiveRecordings, AreNotBegunWithANameThatIsRefused)
{
    const SampleSource source(1000);
    const auto made = registerReceiver(source.address(), 0);
    const std::wstring tooLong(70000, L'x');
    EXPECT_THROW(made->startRecording(0, tooLong.c_str(), 0), Chan::exChan);
    EXPECT_EQ(channel().error.code, invalidValue);
    EXPECT_TRUE(channel().run.isIdle());
    EXPECT_EQ(TQ_KRV::seqRECORD_DATA_var(manager->getAllRecords("REC1"))->length(), 1u) << "a record is left behind";
}

TEST_F(LiveRecordings, TellThatASourceIsNotThere)
{
    const auto made = registerReceiver(receiver.address(), 0);
    receiver.hangUp();
    EXPECT_THROW(made->startRecording(0, L"", 0), Chan::exChan);
    EXPECT_EQ(channel().error.code, 902u);
    EXPECT_TRUE(channel().run.isIdle());
}

TEST_F(LiveRecordings, ListenForAProgramWithoutASource)
{
    const auto program = new FakeChannelManager;
    program->_add_ref();
    {
        const Activation activation(TestOrb::instance().insPoa(), "SendingManager", program);
        const CORBA::Object_var object = activation.reference();
        const TQ_KRV::IF_KRV_c_ChanMan_var reference = TQ_KRV::IF_KRV_c_ChanMan::_unchecked_narrow(object);
        CORBA::String_var id;
        const TQ_KRV::IF_KRV_c_Chan_var made =
            manager->registerChannel(reference, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "managed", id.out());
        made->startRecording(0, L"", 0);
        const SampleSource source(static_cast<quint16>(program->startedPort), 4000);
        EXPECT_TRUE(becomes(State::Idle));
        EXPECT_EQ(channel().progress.sizeBytes, 4000u);
        service.reset();
    }
    program->_remove_ref();
}
