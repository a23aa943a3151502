#include "tests/installation/manager/livechannelsfixture.h"

#include "tests/installation/cco/testorb.h"

#include <QFile>
#include <QtTest/QTest>

#include <algorithm>

using namespace installation;
using namespace std::chrono_literals;

LiveChannels::LiveChannels()
{
    configuration.timing.runInterval = 10ms;
    startManagerWithChannels();
    EXPECT_TRUE(becomesAvailable("REC1"));
    record = importRecord(QStringLiteral("long.wav"), sampleCount).toLatin1();
}

void LiveChannels::startManagerWithChannels()
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
    admin = manager->getKorveAdminInterface();
}

TQ_KRV::IF_KRV_c_Chan_var LiveChannels::registerReceiver(const QString &address, quint64 samplesPerSecond,
                                                         TQ_KRV::interfaceTypeEnum type)
{
    CORBA::String_var id;
    const TQ_KRV::IF_KRV_c_Chan_var made = manager->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfTIMEDOMAIN_DATA, true, true, "receiver", "", type,
        address.toLatin1().constData(), id.out());
    made->setRequestedSampleRate(samplesPerSecond, 2);
    return made;
}

CORBA::ULong LiveChannels::start(quint64 begin, quint64 end, CORBA::ULong count)
{
    return replay()->StartReplay("REC1", record.constData(), TQ_KRV::drHF_20k, begin, end, count);
}

TQ_KORVE::IF_Control_var LiveChannels::control() const
{
    return TQ_KORVE::IF_Control::_narrow(CORBA::Object_var(recorder->reference()));
}

Channel LiveChannels::channel() const
{
    const std::scoped_lock lock(mutex);
    return shown.at(0);
}

bool LiveChannels::isThere(const QString &channelId) const
{
    const std::scoped_lock lock(mutex);
    return std::any_of(shown.begin(), shown.end(), [&](const Channel &known) { return known.id == channelId; });
}

TQ_KRV::struRECORD_DATA_var LiveChannels::recordData(const QByteArray &id) const
{
    TQ_KRV::struRECORD_DATA_var found;
    EXPECT_EQ(admin->getRecord("REC1", id.constData(), found.out()), 0u);
    return found;
}

QByteArray LiveChannels::stored(const QByteArray &id) const
{
    QFile file(folder.filePath(QStringLiteral("recorder/recordings/%1.sigmf-data").arg(QLatin1String(id))));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

bool LiveChannels::becomes(State state) const
{
    return QTest::qWaitFor([&] { return channel().run.state == state; }, patienceMs);
}

bool LiveChannels::positionPasses(quint64 position) const
{
    return QTest::qWaitFor([&] { return channel().progress.position > position; }, patienceMs);
}

bool LiveChannels::sizePasses(quint64 bytes) const
{
    return QTest::qWaitFor([&] { return channel().progress.sizeBytes > bytes; }, patienceMs);
}

bool LiveChannels::receives(quint64 bytes) const
{
    return QTest::qWaitFor([&] { return receiver.bytes() >= bytes; }, patienceMs);
}
