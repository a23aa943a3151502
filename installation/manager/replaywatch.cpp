#include "installation/manager/replaywatch.h"

#include "installation/manager/recordview.h"
#include "installation/manager/replaylink.h"

namespace installation
{

void ReplayWatch::lookAfter(const Channel &channel)
{
    if (!channel.run.xg) // only the channel manager knows where it is
        watch.add([this, id = channel.id, number = channel.run.number] { return look(id, number); });
}

void ReplayWatch::resume(const Channel &channel)
{
    if (channel.run.xg) {
        context.enter(channel, State::ReplayRunning);
        return;
    }
    watch.add([this, id = channel.id, number = channel.run.number, isAdopted = false]() mutable {
        return isAdopted ? look(id, number) : adopt(id, number, isAdopted);
    });
}

bool ReplayWatch::look(const QString &channelId, quint64 runNumber) const
{
    const auto channel = context.running(channelId, runNumber);
    if (!channel || channel->run.isIdle())
        return false;
    const bool isPaused = channel->run.state == State::ReplayPaused;
    if (!isPaused && channel->run.state != State::ReplayRunning)
        return true; // a command is about to change it
    showPosition(*channel);
    const Finding finding = find(*channel);
    if (finding == Finding::Gone)
        finish(*channel, {});
    else if (finding == Finding::Paused && !isPaused) // a recorder pauses by itself only when its link has failed
        finish(*channel, ChannelFailure(failure::linkFault, QStringLiteral("the receiver has gone")));
    else if (finding == Finding::Running && isPaused) // the recorder did not tell what became of a command
        context.enter(*channel, State::ReplayRunning);
    return true;
}

void ReplayWatch::showPosition(const Channel &channel) const
{
    try {
        const quint64 position = ReplayLink(channel.run, context.timing.statusLimit).position();
        if (position != channel.progress.position)
            context.note(channel, [&](Channel &shown) { shown.progress.position = position; });
    } catch (const CORBA::Exception &) { // the status of the record tells why
    }
}

ReplayWatch::Finding ReplayWatch::find(const Channel &channel) const
{
    const auto device = context.devices->find(channel.run.deviceId);
    if (!device || CORBA::is_nil(device->control))
        return Finding::Unknown;
    try {
        const RecordView view = RecordView::of(device->control, channel.run.recordId);
        if (channel.progress.recordEnd == 0) // of an earlier manager, which has not kept it
            context.note(channel, [&](Channel &shown) { shown.progress = view.progress; });
        switch (view.status) {
        case TQ_KORVE::rsREPLAYING:
            return Finding::Running;
        case TQ_KORVE::rsREADY_FOR_REPLAY:
            return Finding::Paused;
        default:
            return Finding::Gone;
        }
    } catch (const TQ_KORVE::exKorve &refusal) {
        return refusal.kind == TQ_KORVE::ekINVALID_RECORD_ID ? Finding::Gone : Finding::Unknown;
    } catch (const CORBA::SystemException &) { // a recorder that comes back tells
        return Finding::Unknown;
    }
}

/// A replay that is over is over, whether or not the recorder hears of its end.
void ReplayWatch::finish(const Channel &channel, const std::optional<ChannelFailure> &cause) const
{
    const auto held = context.enter(channel, State::ReplayStopping);
    if (!held)
        return; // somebody was faster
    if (cause)
        tellFault(channel, *cause); // before it is idle: whoever waits for that finds the cause
    try {
        end.finish(*held, channel.run.state, true);
    } catch (const ChannelFailure &failure) {
        context.noteFailure(channel.id, failure);
    }
}

void ReplayWatch::tellFault(const Channel &channel, const ChannelFailure &fault) const
{
    context.noteFailure(channel.id, fault);
    context.channelManager(channel).tell([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        manager->KorveRecordReplaySessionFault(channel.id.toUtf8().constData(), fault.number(),
                                               fault.text().toUtf8().constData());
    });
}

bool ReplayWatch::adopt(const QString &channelId, quint64 runNumber, bool &isAdopted) const
{
    const auto channel = context.running(channelId, runNumber);
    if (!channel || channel->run.isIdle())
        return false;
    const Finding finding = find(*channel);
    if (finding == Finding::Unknown)
        return true;
    isAdopted = true;
    const bool wasWhole = channel->run.state == State::ReplayRunning || channel->run.state == State::ReplayPaused ||
                          channel->run.state == State::ReplayPausing;
    if (finding == Finding::Gone || !wasWhole)
        finish(*channel, {});
    else
        context.enter(*channel, finding == Finding::Running ? State::ReplayRunning : State::ReplayPaused);
    return true;
}

} // namespace installation
