#include "installation/manager/recordingrun.h"

#include "installation/manager/receiveraddress.h"
#include "installation/manager/recordinglink.h"
#include "installation/manager/recordview.h"
#include "installation/manager/replaylink.h"

#include <algorithm>

namespace installation
{

namespace
{

using enum ChannelCommand;

constexpr quint64 bytesPerMib = 1024 * 1024;

void refuseBusy(const Channel &channel)
{
    if (!channel.run.isIdle())
        throw ChannelFailure(failure::notReady, QStringLiteral("channel %1 is busy").arg(channel.id));
    if (!channel.settings.record)
        throw ChannelFailure(failure::channelNotActive,
                             QStringLiteral("channel %1 is not enabled for recording").arg(channel.id));
}

/// Another device may still have room for it.
bool isOfThisDevice(const ChannelFailure &failure)
{
    return failure.number() == failure::noCapacity || failure.number() == failure::noDevice;
}

} // namespace

void RecordingRun::start(const QString &channelId, const RecordingOrder &order)
{
    try {
        const Channel held = take(channelId, order);
        try {
            const std::vector<Device> devices = candidates(held.settings, order);
            askAvailability(held, devices);
            const Channel recording = noteRecord(createSession(held, devices, order.loopMib));
            nameRecord(recording);
            connect(recording);
            if (const auto entered = context.enter(recording, State::Recording))
                watch.lookAfter(*entered);
            else
                end.undo(recording); // stopped by force meanwhile
        } catch (const ChannelFailure &failure) {
            if (end.undo(held))
                throw;
            throw ChannelFailure(failure.number(), failure.text(), ChannelFailure::Outcome::Unknown);
        }
    } catch (const ChannelFailure &failure) {
        context.noteFailure(channelId, failure);
        throw;
    }
}

Channel RecordingRun::take(const QString &channelId, const RecordingOrder &order) const
{
    const auto held = context.channels->change(channelId, [&](Channel &channel) {
        refuseBusy(channel);
        RunContext::begin(channel, State::RecordStarting);
        channel.run.recordName = order.name;
        channel.run.durationS = order.durationS;
        channel.run.count = order.loopMib;
        channel.progress = {};
        return true;
    });
    if (!held)
        throw ChannelFailure(failure::unknownChannel, QStringLiteral("there is no channel %1").arg(channelId));
    return *held;
}

std::vector<Device> RecordingRun::candidates(const ChannelSettings &settings, const RecordingOrder &order) const
{
    std::vector<Device> devices;
    const QStringList named = settings.devices();
    for (const QString &id : named.isEmpty() ? context.devices->ids() : named)
        if (const auto device = context.devices->find(id))
            devices.push_back(*device);
    if (devices.empty())
        throw ChannelFailure(failure::invalidDevice, QStringLiteral("no device of the channel is known"));
    if (named.isEmpty())
        std::stable_sort(devices.begin(), devices.end(),
                         [](const Device &a, const Device &b) { return a.status.freeBytes > b.status.freeBytes; });
    const bool fits = std::any_of(devices.begin(), devices.end(), [&](const Device &device) {
        return !device.available || order.loopMib * bytesPerMib <= device.status.totalBytes;
    });
    if (!fits)
        throw ChannelFailure(failure::outOfRange, QStringLiteral("no device has room for %1 MiB").arg(order.loopMib));
    return devices;
}

void RecordingRun::askAvailability(const Channel &held, const std::vector<Device> &devices) const
{
    TQ_KRV::seqString ids;
    ids.length(static_cast<CORBA::ULong>(devices.size()));
    for (CORBA::ULong position = 0; position < ids.length(); ++position)
        ids[position] = CORBA::string_dup(devices[position].id.toUtf8().constData());
    bool isAvailable = true;
    context.channelManager(held).ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        isAvailable = manager->isAvailableForRecord(held.id.toUtf8().constData(), ids);
    });
    if (!isAvailable)
        throw ChannelFailure(failure::notReady, QStringLiteral("the channel manager is not available"));
}

/// A recorder that went silent may have made a session that nobody knows of; that keeps no other one from its work.
Channel RecordingRun::createSession(const Channel &held, const std::vector<Device> &devices, quint32 loopMib) const
{
    std::optional<ChannelFailure> last;
    bool isUnknown = false;
    for (const Device &device : devices) {
        try {
            return createSessionOn(held, device, loopMib);
        } catch (const ChannelFailure &failure) {
            if (!last || failure.number() != failure::noDevice)
                last = failure;
            isUnknown = isUnknown || failure.isOutcomeUnknown();
            if (!isOfThisDevice(failure))
                break;
        }
    }
    // There is at least one device.
    throw isUnknown ? ChannelFailure(last->number(), last->text(), ChannelFailure::Outcome::Unknown) : *last;
}

Channel RecordingRun::createSessionOn(const Channel &held, const Device &device, quint32 loopMib) const
{
    const TQ_KORVE::IF_Control_var recorder = context.recorder(device.id, failure::noDevice);
    Channel recording = held;
    orderRecorder(StartRecording, [&] {
        const RecordingLink link = RecordingLink::create(recorder, held.settings, loopMib, context.timing.callLimit);
        recording = context.note(held, [&](Channel &channel) {
            channel.run.deviceId = device.id;
            channel.run.session = link.reference();
        });
    });
    return recording;
}

/// From here on there is a session, which another device would leave behind.
Channel RecordingRun::noteRecord(const Channel &held) const
{
    QString recordId;
    askRecorder(StartRecording, [&] { recordId = RecordingLink(held.run, context.timing.callLimit).recordId(); });
    return context.note(held, [&](Channel &channel) { channel.run.recordId = recordId; });
}

void RecordingRun::nameRecord(const Channel &held) const
{
    if (held.run.recordName.isEmpty())
        return;
    const TQ_KORVE::IF_Control_var recorder = context.recorder(held.run.deviceId, failure::noDevice);
    askRecorder(StartRecording, [&] {
        recorder->setRecordComment(held.run.recordId.toUtf8().constData(), deviceTextOf(held.run.recordName));
    });
}

void RecordingRun::connect(const Channel &held) const
{
    const auto endpoint = ReceiverAddress::from(held.settings.receiverAddress);
    if (endpoint && held.settings.interfaceType == TQ_KRV::UDP_IF)
        listenFor(held, true, endpoint->port);
    else if (endpoint)
        connectTo(held, {TQ_KRV::TCP_IF, endpoint->address, endpoint->port, 0});
    else if (!connectToSourceOfManager(held))
        listenFor(held, held.settings.interfaceType == TQ_KRV::UDP_IF, 0);
}

/// False when the channel manager has no source to connect to and wants to connect itself.
bool RecordingRun::connectToSourceOfManager(const Channel &held) const
{
    const QByteArray id = held.id.toUtf8();
    TQ_KRV::seqNetIf_var interfaces;
    TQ_KRV::seqULong_var ids;
    bool hasSource = false;
    const ChannelManager peer = context.channelManager(held);
    peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        hasSource = manager->connectForRecord(id.constData(), interfaces.out(), ids.out());
    });
    if (!hasSource)
        return false;
    if (interfaces->length() != ids->length())
        throw ChannelFailure(failure::numbersDiffer,
                             QStringLiteral("%1 interfaces with %2 ids").arg(interfaces->length()).arg(ids->length()));
    if (interfaces->length() == 0)
        throw ChannelFailure(failure::notConnected, QStringLiteral("the channel manager names no source"));
    connectTo(held, interfaces[0u]);
    peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->startDataFlow(id.constData()); });
    return true;
}

void RecordingRun::connectTo(const Channel &held, const TQ_KRV::struNetIf &source) const
{
    quint32 connection = 0;
    askRecorder(StartRecording, [&] {
        connection = RecordingLink(held.run, context.timing.callLimit).connectTo(source, linkRateOf(held.settings));
    });
    if (connection == 0)
        throw ChannelFailure(failure::noConnectionId, QStringLiteral("the recorder gave no connection"));
    context.note(held, [&](Channel &channel) { channel.run.connection = connection; });
}

void RecordingRun::listenFor(const Channel &held, bool datagrams, quint16 port) const
{
    quint32 listening = 0;
    askRecorder(StartRecording, [&] {
        listening =
            RecordingLink(held.run, context.timing.callLimit).listen(linkRateOf(held.settings), datagrams, port);
    });
    context.channelManager(held).ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        manager->startDataFlowNG(held.id.toUtf8().constData(), held.run.deviceId.toUtf8().constData(), listening);
    });
}

void RecordingRun::stopChannel(const Channel &seen, const QString &comment, bool forced)
{
    try {
        const bool canStop = seen.run.state == State::Recording || forced;
        const auto held = canStop ? context.enter(seen, State::RecordStopping) : std::nullopt;
        if (!held)
            throw ChannelFailure(failure::channelNotActive, QStringLiteral("channel %1 is not recording").arg(seen.id));
        end.finish(*held, comment, forced);
    } catch (const ChannelFailure &failure) {
        context.noteFailure(seen.id, failure);
        throw;
    }
}

} // namespace installation
