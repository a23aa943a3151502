#include "installation/manager/replayrun.h"

#include "installation/manager/devicerate.h"
#include "installation/manager/receiveraddress.h"
#include "installation/manager/recordview.h"
#include "installation/manager/replaychoice.h"
#include "installation/manager/replaylink.h"

namespace installation
{

namespace
{

using enum ChannelCommand;

/// A session that nobody replays can be taken over; it is the same object.
RecordView freeRecord(TQ_KORVE::IF_Control_ptr recorder, const QString &recordId)
{
    RecordView view;
    askRecorder(StartReplay, [&] { view = RecordView::of(recorder, recordId); });
    if (view.status != TQ_KORVE::rsIDLE && view.status != TQ_KORVE::rsREADY_FOR_REPLAY)
        throw ChannelFailure(failure::wrongState, QStringLiteral("record %1 is busy").arg(recordId));
    return view;
}

void take(Channel &channel, const ReplayOrder &order, const RecordView &view)
{
    RunContext::begin(channel, ChannelRun::State::ReplayStarting);
    channel.run.deviceId = order.deviceId;
    channel.run.recordId = order.recordId;
    channel.run.recordName = view.name;
    channel.run.begin = order.begin;
    channel.run.end = order.end;
    channel.run.count = order.count;
    channel.run.xg = channel.settings.interfaceType == TQ_KRV::TQXG_IF;
    channel.progress = view.progress;
    channel.progress.position = order.begin;
}

void noteLink(Channel &channel, const ReplayLink &link)
{
    channel.run.session = link.reference();
    channel.run.connection = link.connection();
}

Channel &channelWithId(ChannelList &channels, const QString &id)
{
    for (Channel &channel : channels)
        if (channel.id == id)
            return channel;
    throw ChannelFailure(failure::unknownChannel, QStringLiteral("there is no channel %1").arg(id));
}

void connectToManager(const ChannelManager &peer, const Channel &channel,
                      const LLDCmodule::struConnectionParams &listening)
{
    TQ_KRV::seqNetIf interfaces(1);
    interfaces.length(1);
    interfaces[0] = {TQ_KRV::TCP_IF, listening.address, listening.port, listening.parameter};
    interfaces[0].interfaceType = channel.settings.interfaceType;
    TQ_KRV::seqULong ids(1);
    ids.length(1);
    ids[0] = channel.run.connection;
    bool isConnected = true;
    peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        isConnected = manager->connectForReplay(channel.id.toUtf8().constData(), interfaces, ids);
    });
    if (!isConnected)
        throw ChannelFailure(failure::notConnected, QStringLiteral("the channel manager did not connect"));
}

void askAvailability(const ChannelManager &peer, const Channel &channel)
{
    TQ_KRV::seqString devices(1);
    devices.length(1);
    devices[0] = CORBA::string_dup(channel.run.deviceId.toUtf8().constData());
    bool isAvailable = true;
    peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        isAvailable = manager->isAvailableForReplay(channel.id.toUtf8().constData(), devices);
    });
    if (!isAvailable)
        throw ChannelFailure(failure::channelNotActive, QStringLiteral("the channel manager is not available"));
}

} // namespace

void ReplayRun::start(const ReplayOrder &order, std::optional<TQ_KRV::interfaceTypeEnum> type)
{
    startOnOne(order, {}, [&](ChannelList &channels) { return &channelForReplay(channels, order.deviceId, type); });
}

void ReplayRun::startOn(const QString &channelId, const ReplayOrder &order)
{
    startOnOne(order, channelId, [&](ChannelList &channels) {
        Channel &channel = channelWithId(channels, channelId);
        ChannelList alone{channel};
        channelForReplay(alone, order.deviceId, {}); // fails for the same reasons as among many
        return &channel;
    });
}

void ReplayRun::startOnOne(const ReplayOrder &order, QString concerned, const Choice &choose)
{
    noting(concerned, [&] {
        checkSection(order.begin, order.end);
        const TQ_KORVE::IF_Control_var recorder =
            context.recorder(order.deviceId, failure::notConnected, failure::unknownDevice);
        const RecordView view = freeRecord(recorder, order.recordId);
        const auto held = context.channels->changeOne([&](ChannelList &channels) {
            refuseSecondReplay(channels, order.deviceId, order.recordId);
            Channel *const channel = choose(channels);
            take(*channel, order, view);
            return channel;
        });
        concerned = held->id;
        begin(*held, order, recorder);
    });
}

void ReplayRun::begin(const Channel &held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder)
{
    try {
        const Channel connected = held.run.xg ? connectXg(held) : connect(held, order, recorder);
        if (const auto entered = context.enter(connected, State::ReplayRunning))
            watch.lookAfter(*entered);
        else
            end.undo(connected); // stopped by force meanwhile
    } catch (const ChannelFailure &failure) {
        if (end.undo(held))
            throw;
        throw ChannelFailure(failure.number(), failure.text(), ChannelFailure::Outcome::Unknown);
    }
}

Channel ReplayRun::connectXg(const Channel &held) const
{
    bool isStarted = false;
    const ChannelManager peer = context.channelManager(held);
    try {
        peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
            isStarted = manager->startXgReplay(held.run.recordId.toUtf8().constData(), held.run.begin, held.run.end,
                                               held.run.count);
        });
    } catch (const ChannelFailure &failure) {
        if (failure.number() == failure::channelManagerGone) // it may have started nevertheless
            peer.tell([](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->stopXgReplay(); });
        throw;
    }
    if (!isStarted)
        throw ChannelFailure(failure::noDataFlow, QStringLiteral("the channel manager did not start the replay"));
    return held;
}

Channel ReplayRun::connect(Channel held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder) const
{
    const ChannelManager peer = context.channelManager(held);
    askAvailability(peer, held);
    open(held, order, recorder);
    LLDCmodule::struConnectionParams made{};
    askRecorder(StartReplay, [&] {
        ReplayLink link(held.run, context.timing.callLimit);
        made = link.connect(held.settings);
        held = context.note(held, [&](Channel &channel) { noteLink(channel, link); });
    });
    if (!ReceiverAddress::from(held.settings.receiverAddress))
        connectToManager(peer, held, made);
    askRecorder(StartReplay, [&] { ReplayLink(held.run, context.timing.callLimit).start(); });
    peer.ask([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->DataTransferStarted(held.id.toUtf8().constData()); });
    return held;
}

void ReplayRun::open(Channel &held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder) const
{
    askRecorder(StartReplay, [&] {
        const ReplayLink link =
            ReplayLink::open(recorder, held.run, deviceRateOf(order.rate), context.timing.callLimit);
        held = context.note(held, [&](Channel &channel) { noteLink(channel, link); });
    });
}

void ReplayRun::pause(const QString &deviceId, const QString &recordId)
{
    const auto seen = replaying(deviceId, recordId);
    noting(seen ? seen->id : QString(), [&] {
        const bool isRunning = seen && seen->run.state == State::ReplayRunning && !seen->run.xg;
        const auto held = isRunning ? context.enter(*seen, State::ReplayPausing) : std::nullopt;
        if (!held)
            throw ChannelFailure(failure::nothingToPause, QStringLiteral("record %1 is not replayed").arg(recordId));
        orBackTo(State::ReplayRunning, *held,
                 [&] { orderRecorder(PauseReplay, [&] { ReplayLink(held->run, context.timing.callLimit).pause(); }); });
        context.enter(*held, State::ReplayPaused);
    });
}

void ReplayRun::goOn(const QString &deviceId, const QString &recordId)
{
    const auto seen = replaying(deviceId, recordId);
    noting(seen ? seen->id : QString(), [&] {
        const bool isPaused = seen && seen->run.state == State::ReplayPaused;
        const auto held = isPaused ? context.enter(*seen, State::ReplayStarting) : std::nullopt;
        if (!held)
            throw ChannelFailure(failure::nothingToContinue, QStringLiteral("record %1 is not paused").arg(recordId));
        orBackTo(State::ReplayPaused, *held, [&] {
            orderRecorder(ContinueReplay, [&] { ReplayLink(held->run, context.timing.callLimit).start(); });
        });
        context.enter(*held, State::ReplayRunning);
    });
}

void ReplayRun::stop(const QString &deviceId, const QString &recordId)
{
    if (const auto seen = replaying(deviceId, recordId))
        stopChannel(*seen, false);
    else
        noting({}, [&] { stopForeign(deviceId, recordId); });
}

void ReplayRun::stopChannel(const Channel &seen, bool forced)
{
    noting(seen.id, [&] {
        const bool canStop = seen.run.state == State::ReplayRunning || seen.run.state == State::ReplayPaused;
        const auto held = canStop || forced ? context.enter(seen, State::ReplayStopping) : std::nullopt;
        if (!held)
            throw ChannelFailure(failure::notReplaying,
                                 QStringLiteral("record %1 is not replayed").arg(seen.run.recordId));
        end.finish(*held, seen.run.state, forced);
    });
}

/// A replay that no channel knows of, left behind by a manager that ended while it began.
void ReplayRun::stopForeign(const QString &deviceId, const QString &recordId) const
{
    const TQ_KORVE::IF_Control_var recorder = context.recorder(deviceId, failure::notConnected);
    askRecorder(StopReplay, [&] {
        const TQ_KORVE::eRECORD_STATUS status = RecordView::of(recorder, recordId).status;
        if (status != TQ_KORVE::rsREPLAYING && status != TQ_KORVE::rsREADY_FOR_REPLAY)
            throw ChannelFailure(failure::notReplaying, QStringLiteral("record %1 is not replayed").arg(recordId));
    });
    orderRecorder(StopReplay, [&] { recorder->setRecordIdle(recordId.toUtf8().constData()); });
}

std::optional<Channel> ReplayRun::replaying(const QString &deviceId, const QString &recordId) const
{
    for (const Channel &channel : context.channels->list())
        if (channel.run.isReplay() && channel.run.deviceId == deviceId && channel.run.recordId == recordId)
            return channel;
    return {};
}

template <typename Work> void ReplayRun::noting(const QString &concerned, Work work) const
{
    try {
        work();
    } catch (const ChannelFailure &failure) {
        context.noteFailure(concerned, failure);
        throw;
    }
}

template <typename Work> void ReplayRun::orBackTo(State before, const Channel &held, Work work) const
{
    try {
        work();
    } catch (const ChannelFailure &failure) {
        // The next look takes a pause for what it is when the replay goes on; taken for running, one that is paused
        // would count as failed.
        context.enter(held, failure.isOutcomeUnknown() ? State::ReplayPaused : before);
        throw;
    }
}

} // namespace installation
