#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/livechannelsfixture.h"
#include "tests/installation/recorder/samplepeer.h"

#include "tests/installation/cco/testorb.h"

#include "installation/calls/activation.h"

#include <QtTest/QTest>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace installation;

namespace
{

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

} // namespace

TEST_F(LiveChannels, PlayARecordToItsReceiver)
{
    registerReceiver(receiver.address(), fullSpeed);
    EXPECT_EQ(start(0, size, 2), 0u);
    EXPECT_TRUE(receives(2 * size));
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(receiver.content(), stored(record).repeated(2));
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
    EXPECT_TRUE(stored(record).startsWith(receiver.content())) << "something is lost, or came twice";
}

TEST_F(LiveChannels, PlayASectionByDatagrams)
{
    SamplePeer datagrams(SamplePeer::Transport::Udp, QStringLiteral("127.0.0.1"));
    registerReceiver(QStringLiteral("127.0.0.1:%1").arg(datagrams.port()), 0, TQ_KRV::UDP_IF);
    EXPECT_EQ(replay()->StartReplayReceivers("REC1", record.constData(), TQ_KRV::drHF_20k, 2000, 6000, 1, TQ_KRV::UDP_IF),
              0u);
    EXPECT_EQ(datagrams.readToEnd(), stored(record).mid(2000, 4000));
    EXPECT_TRUE(becomes(State::Idle));
    EXPECT_EQ(status(record), TQ_KRV::rsIDLE);
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
    EXPECT_TRUE(receives(receiver.bytes() + 1));
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
            manager->registerChannelEx(reference, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "managed", "REC1", id.out());
        made->setRequestedSampleRate(fullSpeed, 0);
        EXPECT_EQ(start(0, size), 0u);
        EXPECT_TRUE(QTest::qWaitFor([&] { return program->bytes == size; }, patienceMs));
        EXPECT_TRUE(becomes(State::Idle));
        service.reset();
    }
    program->_remove_ref();
}
