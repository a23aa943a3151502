#include "tests/installation/manager/channelfixture.h"

#include "tests/installation/cco/testorb.h"
#include "tests/support/waiting.h"

#include "installation/manager/channelmanager.h"

#include <QtTest/QTest>

using namespace installation;
using namespace std::chrono_literals;

ChannelFixture::ChannelFixture() : peer(new FakeChannelManager)
{
    recorder.emplace("FakeRecorder");
    recorder->add("R1");
    peer->_add_ref();
    peerActivation.emplace(TestOrb::instance().insPoa(), "FakeChannelManager", peer);
    Device device;
    device.id = QStringLiteral("REC1");
    device.address = QStringLiteral("127.0.0.1");
    device.available = true;
    device.status.totalBytes = 1 << 30;
    device.control = recorder->reference();
    devices = std::make_shared<DeviceDirectory>(DeviceList{device});
    configuration.stateFolder = folder.path();
    configuration.timing = {.clientLimit = 2s, .callLimit = 2s, .runInterval = 10ms};
    startService();
}

ChannelFixture::~ChannelFixture()
{
    service.reset();
    peerActivation.reset();
    peer->_remove_ref();
}

void ChannelFixture::startService()
{
    service.emplace(configuration, ServedObjects(TestOrb::instance().insPoa()), devices,
                    [this](const ChannelList &channels, const CommandError &) {
                        const std::scoped_lock lock(mutex);
                        shown = channels;
                    });
}

void ChannelFixture::restartService()
{
    service.reset();
    startService();
}

ChannelSettings ChannelFixture::receiverChannel() const
{
    return {.name = QStringLiteral("receiver"), .record = true, .replay = true, .receiverAddress = receiver.address()};
}

ChannelSettings ChannelFixture::managerChannel() const
{
    const CORBA::Object_var object = peerActivation->reference();
    return {
        .name = QStringLiteral("managed"), .record = true, .replay = true, .channelManager = textOfReference(object)};
}

QString ChannelFixture::add(const ChannelSettings &settings)
{
    const ChannelService::Registered made = service->registerChannel(settings);
    CORBA::release(made.reference);
    return made.id;
}

Channel ChannelFixture::channel(const QString &id) const
{
    const std::scoped_lock lock(mutex);
    for (const Channel &channel : shown)
        if (channel.id == id)
            return channel;
    throw std::runtime_error("no such channel");
}

bool ChannelFixture::becomes(const QString &id, State state) const
{
    return QTest::qWaitFor([&] { return channel(id).run.state == state; }, patienceMs);
}

bool ChannelFixture::becomesStatus(const std::string &recordId, TQ_KORVE::eRECORD_STATUS status) const
{
    return QTest::qWaitFor([&] { return recorder->record(recordId)->statusNow() == status; }, patienceMs);
}

CORBA::ULong ChannelFixture::startReplay(CORBA::ULongLong begin, CORBA::ULongLong end, CORBA::ULong count)
{
    return replay()->StartReplay("REC1", "R1", TQ_KRV::drHF_20k, begin, end, count);
}

TQ_KRV::IF_KORVE_Replay_var ChannelFixture::replay() const
{
    return service->replay(QStringLiteral("REC1"));
}
