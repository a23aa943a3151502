#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/samplereceiver.h"
#include "tests/installation/manager/samplesource.h"

#include "tests/installation/cco/testorb.h"

#include "installation/cco/activation.h"

#include <QtTest/QTest>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace installation;
using namespace std::chrono_literals;

namespace
{

constexpr int patienceMs = 20000;
constexpr quint64 fullSpeed = 0xffffffff;

/// Connects to where a recorder listens, and takes what comes.
class ConnectingManager : public FakeChannelManager
{
public:
    ~ConnectingManager() override
    {
        if (thread.joinable())
            thread.join();
    }
    CORBA::Boolean connectForReplay(const char *id, const TQ_KRV::seqNetIf &interfaces,
                                    const TQ_KRV::seqULong &ids) override
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(interfaces[0].address);
        address.sin_port = htons(static_cast<std::uint16_t>(interfaces[0].port));
        const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool isConnected =
            ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
        thread = std::thread([this, descriptor] { take(descriptor); });
        return isConnected && FakeChannelManager::connectForReplay(id, interfaces, ids);
    }

    std::atomic<quint64> bytes = 0;

private:
    void take(int descriptor)
    {
        std::array<char, 4096> buffer;
        for (ssize_t count = 1; count > 0;) {
            count = ::recv(descriptor, buffer.data(), buffer.size(), 0);
            bytes += static_cast<quint64>(std::max<ssize_t>(count, 0));
        }
        ::close(descriptor);
    }

    std::thread thread;
};

/// Over a real recorder with one record of ten seconds.
class LiveChannels : public ManagerFixture
{
protected:
    using State = ChannelRun::State;

    LiveChannels()
    {
        configuration.timing.runInterval = 10ms;
        startManagerWithChannels();
        EXPECT_TRUE(becomesAvailable("REC1"));
        record = importRecord(QStringLiteral("long.wav"), sampleCount).toLatin1();
    }
    ~LiveChannels() override { service.reset(); } // before what the listener uses

    void startManagerWithChannels()
    {
        service.reset();
        ManagerListeners listeners;
        listeners.channels = [this](const ChannelList &channels, const CommandError &) {
            const std::scoped_lock lock(mutex);
            shown = channels;
        };
        service.emplace(configuration, TestOrb::instance().insPoa(), cco, listeners);
        const CORBA::Object_var object = service->reference();
        manager = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
    }
    TQ_KRV::IF_KRV_c_Chan_var registerReceiver(const QString &address, quint64 samplesPerSecond)
    {
        CORBA::String_var id;
        const TQ_KRV::IF_KRV_c_Chan_var channel = manager->registerReceiverChannel(
            TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfTIMEDOMAIN_DATA, true, true, "receiver", "",
            TQ_KRV::TCP_IF, address.toLatin1().constData(), id.out());
        channel->setRequestedSampleRate(samplesPerSecond, 2);
        return channel;
    }
    CORBA::ULong start(quint64 begin, quint64 end, CORBA::ULong count = 1)
    {
        return replay()->StartReplay("REC1", record.constData(), TQ_KRV::drHF_20k, begin, end, count);
    }
    TQ_KRV::IF_KORVE_Replay_var replay() { return manager->getKorveReplayInterface("REC1"); }
    Channel channel()
    {
        const std::scoped_lock lock(mutex);
        return shown.at(0);
    }
    bool becomes(State state)
    {
        return QTest::qWaitFor([&] { return channel().run.state == state; }, patienceMs);
    }
    bool positionPasses(quint64 position)
    {
        return QTest::qWaitFor([&] { return channel().progress.position > position; }, patienceMs);
    }
    TQ_KRV::eRECORD_STATUS status(const QByteArray &id)
    {
        TQ_KRV::struRECORD_DATA_var found;
        EXPECT_EQ(TQ_KRV::IF_KORVE_Admin_var(manager->getKorveAdminInterface())
                      ->getRecord("REC1", id.constData(), found.out()),
                  0u);
        return found->recordStatus;
    }

    static constexpr int sampleCount = 80000;
    static constexpr quint64 size = 2 * sampleCount;
    QByteArray record;
    SampleReceiver receiver;
    std::mutex mutex; // guards `shown`, which the threads of the channels write
    ChannelList shown;
};

} // namespace

TEST_F(LiveChannels, PlayARecordToItsReceiver)
{
    registerReceiver(receiver.address(), fullSpeed);
    EXPECT_EQ(start(0, size, 2), 0u);
    EXPECT_TRUE(QTest::qWaitFor([&] { return receiver.bytes() == 2 * size; }, patienceMs));
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(channel().error.code, 0u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveChannels, PauseContinueAndStop)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    ASSERT_TRUE(positionPasses(0));
    EXPECT_EQ(status(record), TQ_KRV::rsREPLAYING);
    EXPECT_EQ(replay()->PauseReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(status(record), TQ_KRV::rsREADY_FOR_REPLAY);
    EXPECT_EQ(replay()->ContinueReplay("REC1", record.constData()), 0u);
    const quint64 position = channel().progress.position;
    EXPECT_TRUE(positionPasses(position));
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
    EXPECT_LT(receiver.bytes(), size);
}

TEST_F(LiveChannels, EndWithTheirReceiver)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    receiver.hangUp();
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(channel().error.code, 905u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveChannels, TellWhatTheRecorderRefuses)
{
    registerReceiver(receiver.address(), 0);
    EXPECT_EQ(replay()->StartReplay("REC1", "R0", TQ_KRV::drHF_20k, 0, size, 1), 766u);
    EXPECT_EQ(start(0, size + 2), 10002u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
    receiver.hangUp();
    EXPECT_EQ(start(0, size), 902u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveChannels, ContinueNothingWithoutAReceiver)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    ASSERT_EQ(replay()->PauseReplay("REC1", record.constData()), 0u);
    receiver.hangUp();
    const CORBA::ULong number = replay()->ContinueReplay("REC1", record.constData());
    EXPECT_TRUE(number == 0 || number == 767 || number == 901) << number; // it may be seen only by sending
    EXPECT_TRUE(becomes(number == 0 ? State::Idle : State::ReplayPaused));
}

TEST_F(LiveChannels, GoOnWithoutAManager)
{
    registerReceiver(receiver.address(), 0);
    ASSERT_EQ(start(0, size), 0u);
    service.reset();
    const quint64 before = receiver.bytes();
    EXPECT_TRUE(QTest::qWaitFor([&] { return receiver.bytes() > before; }, patienceMs));
    startManagerWithChannels();
    ASSERT_TRUE(becomesAvailable("REC1"));
    const quint64 position = channel().progress.position;
    EXPECT_TRUE(positionPasses(position));
    EXPECT_EQ(replay()->PauseReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(replay()->StopReplay("REC1", record.constData()), 0u);
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
}

TEST_F(LiveChannels, HaveAChannelManagerConnect)
{
    const auto program = new ConnectingManager;
    program->_add_ref();
    {
        const Activation activation(TestOrb::instance().insPoa(), "ConnectingManager", program);
        const CORBA::Object_var object = activation.reference();
        const TQ_KRV::IF_KRV_c_ChanMan_var reference = TQ_KRV::IF_KRV_c_ChanMan::_unchecked_narrow(object);
        CORBA::String_var id;
        const TQ_KRV::IF_KRV_c_Chan_var made =
            manager->registerChannel(reference, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "managed", id.out());
        made->setRequestedSampleRate(fullSpeed, 0);
        EXPECT_EQ(start(0, size), 0u);
        EXPECT_TRUE(QTest::qWaitFor([&] { return program->bytes == size; }, patienceMs));
        EXPECT_TRUE(becomes(State::Idle));
        service.reset();
    }
    program->_remove_ref();
}

TEST_F(LiveChannels, RecordWhatASourceHas)
{
    const SampleSource source(10000);
    const auto channel = registerReceiver(source.address(), 0);
    channel->startRecording(0, L"evening", 0);
    const QByteArray id = this->channel().run.recordId.toLatin1();
    EXPECT_TRUE(becomes(State::Idle)); // with the end of the source
    TQ_KRV::struRECORD_DATA_var made;
    ASSERT_EQ(
        TQ_KRV::IF_KORVE_Admin_var(manager->getKorveAdminInterface())->getRecord("REC1", id.constData(), made.out()),
        0u);
    EXPECT_EQ(made->size, 10000u);
    EXPECT_EQ(textOf(made->recordName), QStringLiteral("evening"));
    EXPECT_EQ(made->recordStatus, TQ_KRV::rsIDLE);
}

TEST_F(LiveChannels, StopARecordingWithAComment)
{
    const SampleSource source(1ull << 40);
    const auto channel = registerReceiver(source.address(), 0);
    channel->startRecording(1, L"", 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return this->channel().progress.sizeBytes > 0; }, patienceMs));
    const QByteArray id = this->channel().run.recordId.toLatin1();
    EXPECT_EQ(status(id), TQ_KRV::rsRECORDING);
    channel->stopRecording(L"enough");
    EXPECT_EQ(status(id), TQ_KRV::rsIDLE);
    EXPECT_EQ(this->channel().run.state, State::Idle);
}

TEST_F(LiveChannels, TellThatASourceIsNotThere)
{
    const auto channel = registerReceiver(receiver.address(), 0);
    receiver.hangUp();
    EXPECT_THROW(channel->startRecording(0, L"", 0), TQ_KRV::IF_KRV_c_Chan::exChan);
    EXPECT_EQ(this->channel().error.code, 902u);
    EXPECT_TRUE(this->channel().run.isIdle());
}

TEST_F(LiveChannels, ListenForAProgramWithoutASource)
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
