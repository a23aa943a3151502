#include "installation/manager/recordingwatch.h"

#include "installation/contracts/endedrecording.h"
#include "installation/manager/recordview.h"

namespace installation
{

namespace
{

constexpr quint64 usPerSecond = 1000000;

bool isOverdue(const ChannelRun &run)
{
    return run.durationS != 0 && nowUs() >= run.startedUs + run.durationS * usPerSecond;
}

} // namespace

void RecordingWatch::lookAfter(const Channel &channel)
{
    watch.add([this, id = channel.id, number = channel.run.number] { return look(id, number); });
}

void RecordingWatch::resume(const Channel &channel)
{
    watch.add([this, id = channel.id, number = channel.run.number, isAdopted = false]() mutable {
        return isAdopted ? look(id, number) : adopt(id, number, isAdopted);
    });
}

bool RecordingWatch::look(const QString &channelId, quint64 runNumber) const
{
    const auto channel = context.running(channelId, runNumber);
    if (!channel || channel->run.isIdle())
        return false;
    if (channel->run.state != State::Recording)
        return true; // a command is about to change it
    const Finding finding = find(*channel);
    // Who does not answer cannot be told that the time is over either, until he does.
    if (finding == Finding::Gone || (finding == Finding::Recording && isOverdue(channel->run)))
        finish(*channel, finding == Finding::Gone);
    return true;
}

RecordingWatch::Finding RecordingWatch::find(const Channel &channel) const
{
    const auto device = context.devices->find(channel.run.deviceId);
    if (!device || CORBA::is_nil(device->control))
        return Finding::Unknown;
    try {
        const RecordView view = RecordView::of(device->control, channel.run.recordId);
        context.note(channel, [&](Channel &shown) { shown.progress = view.progress; });
        return view.status == TQ_KORVE::rsIDLE ? Finding::Gone : Finding::Recording;
    } catch (const TQ_KORVE::exKorve &refusal) {
        return refusal.kind == TQ_KORVE::ekINVALID_RECORD_ID ? Finding::Gone : Finding::Unknown;
    } catch (const CORBA::SystemException &) { // a recorder that comes back tells
        return Finding::Unknown;
    }
}

void RecordingWatch::finish(const Channel &channel, bool isGone) const
{
    const auto held = context.enter(channel, State::RecordStopping);
    if (!held)
        return; // somebody was faster
    if (isGone)
        tellTrouble(channel); // before it is idle: whoever waits for that finds the cause
    try {
        end.finish(*held, {}, isGone);
    } catch (const ChannelFailure &failure) {
        context.noteFailure(channel.id, failure);
    }
}

/// Of a recording that came to another end than its source.
void RecordingWatch::tellTrouble(const Channel &channel) const
{
    const QString trouble = troubleOf(channel);
    if (trouble.isEmpty())
        return;
    const ChannelFailure fault(failure::linkFault, trouble);
    context.noteFailure(channel.id, fault);
    context.channelManager(channel).tell([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        manager->KorveRecordReplaySessionFault(channel.id.toUtf8().constData(), fault.number(),
                                               fault.text().toUtf8().constData());
    });
}

/// As the recorder noted it; empty when there is none, or nobody knows.
QString RecordingWatch::troubleOf(const Channel &channel) const
{
    const auto device = context.devices->find(channel.run.deviceId);
    if (!device || CORBA::is_nil(device->control))
        return {};
    try {
        TQ_KORVE::seqHistory_var history = device->control->getHistory(channel.run.recordId.toUtf8().constData());
        for (CORBA::ULong entry = history->length(); entry > 0; --entry) {
            const QString text = fromDeviceText(history[entry - 1].historyEntry);
            if (text.startsWith(QLatin1String(endedByItself)))
                return text.mid(static_cast<int>(qstrlen(endedByItself)));
        }
    } catch (const CORBA::Exception &) { // without a sample there is no record
    }
    return {};
}

bool RecordingWatch::adopt(const QString &channelId, quint64 runNumber, bool &isAdopted) const
{
    const auto channel = context.running(channelId, runNumber);
    if (!channel || channel->run.isIdle())
        return false;
    const Finding finding = channel->run.recordId.isEmpty() ? Finding::Gone : find(*channel);
    if (finding == Finding::Unknown)
        return true;
    isAdopted = true;
    if (finding == Finding::Gone || channel->run.state != State::Recording)
        finish(*channel, true);
    return true;
}

} // namespace installation
