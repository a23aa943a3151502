#include "installation/manager/channelservant.h"

#include "installation/manager/channelcheck.h"
#include "installation/manager/recorddescription.h"
#include "installation/manager/recordview.h"

#include "coresupport/trace.h"

#include <array>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/channelservant";
using exChan = TQ_KRV::IF_KRV_c_Chan::exChan;
using Kind = TQ_KRV::IF_KRV_c_Chan;

struct Fault {
    quint32 number;
    const char *text;
};
constexpr std::array faults{
    Fault{failure::noSession, "the channel manager could not create its recording session"},
    Fault{failure::notConnected, "the channel manager could not connect"},
    Fault{failure::unknownRecord, "the channel manager got no replay session"},
    Fault{failure::noDataFlow, "the channel manager could not start the transfer of data"},
};
static_assert(faults.size() == TQ_KRV::cfSTART_DATA_TRANSFER_FAILED + 1, "the wire has 4 faults, in this order");

void refuseWhileRecording(const Channel &channel)
{
    if (channel.run.isRecording())
        throw exChan(Kind::Channel_Is_Recording, "the channel is recording");
}

void refuseWhileReplaying(const Channel &channel)
{
    if (channel.run.isReplay())
        throw exChan(Kind::Channel_Is_Replaying, "the channel is replaying");
}

void refuseWhileBusy(const Channel &channel)
{
    refuseWhileRecording(channel);
    refuseWhileReplaying(channel);
}

QString textOf(const CORBA::WChar *text)
{
    return fromDeviceText(toDeviceText(text));
}

/// Runs @p command; what fails leaves as the kind that says the same.
template <typename Command> void orExChan(Command command)
{
    try {
        command();
    } catch (const ChannelFailure &failure) {
        if (failure.isOutcomeUnknown()) // a kind would say that nothing was done
            throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE);
        const QByteArray text = failure.text().toUtf8();
        throw exChan(kindOf(failure.number()), text.constData());
    }
}

} // namespace

ChannelServant::ChannelServant(QString id, std::shared_ptr<ChannelCore> core, Removal remove)
    : id(std::move(id)), core(std::move(core)), remove(std::move(remove))
{
}

void ChannelServant::errorOccured(TQ_KRV::eCHANNEL_FAULT fault)
{
    const Fault &known = faults.at(static_cast<std::size_t>(fault));
    core->context.noteFailure(id, ChannelFailure(known.number, QLatin1String(known.text)));
    core->stopByForce(channel());
}

void ChannelServant::removeChannel()
{
    remove(id, false);
}

void ChannelServant::removeChannelForced()
{
    remove(id, true);
}

void ChannelServant::setCallBackInterface(TQ_KRV::IF_KRV_c_ChanMan_ptr callback)
{
    const QString reference = textOfReference(callback);
    change([&](ChannelSettings &settings) { settings.channelManager = reference; });
}

void ChannelServant::setDataRateClass(TQ_KRV::eDATARATE_CLASS rate)
{
    change([&](ChannelSettings &settings) { settings.rate = rate; });
}

void ChannelServant::setRequestedSampleRate(CORBA::ULongLong sampleRate, CORBA::UShort sampleBytes)
{
    change([&](ChannelSettings &settings) {
        settings.sampleRate = sampleRate;
        settings.sampleBytes = sampleBytes;
    });
}

void ChannelServant::setPELINRegistration(CORBA::Boolean registers, CORBA::Boolean forces)
{
    if (registers && !core->hasArchive)
        refuse(TQ_KRV::Invalid_Interface, "this manager has no archive");
    change([&](ChannelSettings &settings) {
        settings.registersAtArchive = registers;
        settings.forcesRegistration = forces;
    });
}

void ChannelServant::setDataFormat(TQ_KRV::eDATA_FORMAT format)
{
    change([&](ChannelSettings &settings) { settings.format = format; });
}

void ChannelServant::setRecordFlag(CORBA::Boolean record)
{
    changeWhile(
        [&](const Channel &channel) {
            if (!record)
                refuseWhileRecording(channel);
        },
        [&](ChannelSettings &settings) { settings.record = record; });
}

void ChannelServant::setReplayFlag(CORBA::Boolean replay)
{
    changeWhile(
        [&](const Channel &channel) {
            if (!replay)
                refuseWhileReplaying(channel);
        },
        [&](ChannelSettings &settings) { settings.replay = replay; });
}

void ChannelServant::setName(const char *name)
{
    change([&](ChannelSettings &settings) { settings.name = QString::fromUtf8(name); });
}

char *ChannelServant::getChannelID()
{
    return CORBA::string_dup(id.toUtf8().constData());
}

void ChannelServant::startRecording(CORBA::ULong loopMib, const CORBA::WChar *name, CORBA::ULong durationS)
{
    refuseWhileBusy(channel());
    orExChan([&] { core->recordings.start(id, {loopMib, textOf(name), durationS}); });
}

void ChannelServant::stopRecording(const CORBA::WChar *comment)
{
    refuseWhileReplaying(channel());
    orExChan([&] { core->recordings.stopChannel(channel(), textOf(comment), false); });
}

void ChannelServant::DataTransferStarted()
{
    core->context.channels->change(id, [](Channel &channel) {
        channel.run.startedUs = nowUs(); // a duration counts from here
        return channel.run.state == ChannelRun::State::Recording;
    });
}

void ChannelServant::DataTransferStopping()
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("the data of channel %1 are about to end").arg(id); });
}

void ChannelServant::DataTransferStopped()
{
    core->stopByForce(channel());
}

void ChannelServant::startReplaying(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                                    CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition, CORBA::ULong count)
{
    try {
        core->replays.startOn(
            id, {QString::fromUtf8(deviceId), QString::fromUtf8(recordId), rate, startPosition, stopPosition, count});
    } catch (const ChannelFailure &failure) { // shown with the channel; the contract has no other answer
        if (failure.isOutcomeUnknown())
            throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE);
    }
}

void ChannelServant::channelError(const char *text)
{
    core->context.noteFailure(id, ChannelFailure(failure::channelFault, QString::fromUtf8(text)));
}

void ChannelServant::setKorveDevices(const TQ_KRV::seqStringList &devices)
{
    QVector<QStringList> groups;
    for (CORBA::ULong group = 0; group < devices.length(); ++group) {
        groups << QStringList();
        for (CORBA::ULong position = 0; position < devices[group].length(); ++position) {
            const QString device = QString::fromUtf8(devices[group][position]);
            if (!core->context.devices->find(device))
                throw exChan(Kind::Invalid_DeviceId, devices[group][position]);
            groups.last() << device;
        }
    }
    changeWhile(refuseWhileBusy, [&](ChannelSettings &settings) { settings.deviceGroups = groups; });
}

void ChannelServant::setAdditionalDataRateClass()
{
    change([](ChannelSettings &settings) { settings.additionalRate = settings.rate; });
}

void ChannelServant::change(const Edit &edit)
{
    changeWhile([](const Channel &) {},
                [&](ChannelSettings &settings) {
                    edit(settings);
                    checkSettings(settings);
                });
}

void ChannelServant::changeWhile(const std::function<void(const Channel &)> &check, const Edit &edit)
{
    const auto changed = core->context.channels->change(id, [&](Channel &channel) {
        check(channel);
        edit(channel.settings);
        return true;
    });
    if (!changed)
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
}

Channel ChannelServant::channel() const
{
    const auto found = core->context.channels->find(id);
    if (!found)
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    return *found;
}

} // namespace installation
