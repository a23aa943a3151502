#include "installation/manager/recordingend.h"

#include "installation/manager/recordinglink.h"
#include "installation/manager/recordview.h"

namespace installation
{

void RecordingEnd::finish(const Channel &held, const QString &comment, bool forced) const
{
    const QByteArray id = held.id.toUtf8();
    const ChannelManager peer = context.channelManager(held);
    peer.tell([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->stopDataFlow(id.constData()); });
    const auto failed = endSession(held, comment);
    const bool goesOn = failed && mayGoOn(held, *failed);
    if (goesOn && !forced) {
        context.enter(held, ChannelRun::State::Recording);
        throw *failed;
    }
    peer.tell([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->disconnect(id.constData()); });
    peer.tell([&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        manager->RecordingFinished(id.constData(), held.run.deviceId.toUtf8().constData(),
                                   held.run.recordId.toUtf8().constData());
    });
    leave(held, goesOn);
    if (failed)
        throw *failed;
}

bool RecordingEnd::undo(const Channel &held) const
{
    const Channel channel = context.running(held.id, held.run.number).value_or(held);
    bool mayRecord = false;
    if (!channel.run.session.isEmpty()) {
        const auto failed = endSession(channel, {});
        mayRecord = failed && mayGoOn(channel, *failed);
        context.channelManager(channel).tell(
            [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->disconnect(channel.id.toUtf8().constData()); });
    }
    leave(channel, mayRecord);
    return !mayRecord;
}

/// A session without a record has no link yet, and stores nothing.
void RecordingEnd::leave(const Channel &held, bool mayRecord) const
{
    if (mayRecord && !held.run.recordId.isEmpty())
        left.add(held.run);
    context.leave(held);
}

/// A recorder that does not answer, or that refused the comment, still records.
bool RecordingEnd::mayGoOn(const Channel &held, const ChannelFailure &failed) const
{
    if (failed.number() == failure::notConnected)
        return true;
    try {
        const TQ_KORVE::IF_Control_var recorder = context.recorder(held.run.deviceId, failure::notConnected);
        const TQ_KORVE::eRECORD_STATUS status = RecordView::of(recorder, held.run.recordId).status;
        return status == TQ_KORVE::rsRECORDING || status == TQ_KORVE::rsREADY_FOR_RECORDING;
    } catch (const TQ_KORVE::exKorve &) { // without a sample there is no record any more
        return false;
    } catch (const CORBA::SystemException &) {
        return true;
    } catch (const ChannelFailure &) {
        return true;
    }
}

/// Keeps the comment on a recording whose source ended before somebody stopped it.
void RecordingEnd::keepComment(const Channel &held, const QString &comment) const
{
    const TQ_KORVE::IF_Control_var recorder = context.recorder(held.run.deviceId, failure::notConnected);
    recorder->addHistory(held.run.recordId.toUtf8().constData(), deviceTextOf(comment));
}

std::optional<ChannelFailure> RecordingEnd::endSession(const Channel &held, const QString &comment) const
{
    if (held.run.session.isEmpty())
        return {};
    try {
        orderRecorder(ChannelCommand::StopRecording, [&] {
            const bool isEnded = RecordingLink(held.run, context.timing.callLimit).end(comment);
            if (!isEnded && !comment.isEmpty())
                keepComment(held, comment);
        });
        return {};
    } catch (const ChannelFailure &failure) {
        return failure;
    }
}

} // namespace installation
