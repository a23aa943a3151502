#include "installation/manager/replayend.h"

#include "installation/manager/replaylink.h"

namespace installation
{

void ReplayEnd::finish(const Channel &held, ChannelRun::State before, bool forced) const
{
    if (held.run.xg)
        finishXg(held);
    else
        finishLink(held, before, forced);
}

void ReplayEnd::finishXg(const Channel &held) const
{
    const auto failed = tell(held, [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) {
        if (!manager->stopXgReplay())
            throw ChannelFailure(failure::notDisconnected, QStringLiteral("the channel manager did not stop"));
    });
    context.leave(held);
    if (failed)
        throw *failed;
}

void ReplayEnd::finishLink(const Channel &held, ChannelRun::State before, bool forced) const
{
    const QByteArray id = held.id.toUtf8();
    const auto notStopped =
        tell(held, [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->stoppingDataTransfer(id.constData()); });
    const auto notClosed = closeLink(held);
    if (notClosed && notClosed->number() == failure::notConnected && !forced) {
        // It may still be going on; the next look finds that out. Taken for running, one whose link is dropped would
        // count as failed.
        context.enter(held, notClosed->isOutcomeUnknown() ? ChannelRun::State::ReplayPaused : before);
        throw *notClosed;
    }
    const auto notLeft = tell(held, [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->disconnect(id.constData()); });
    context.leave(held);
    for (const auto &failed : {notClosed, notStopped, notLeft})
        if (failed)
            throw *failed;
}

bool ReplayEnd::undo(const Channel &held) const
{
    const Channel channel = context.running(held.id, held.run.number).value_or(held);
    bool mayPlay = false;
    if (!channel.run.session.isEmpty()) {
        const auto notClosed = closeLink(channel);
        mayPlay = notClosed && notClosed->number() == failure::notConnected && channel.run.connection != 0;
        context.channelManager(channel).tell(
            [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->disconnect(channel.id.toUtf8().constData()); });
    }
    context.leave(channel);
    return !mayPlay;
}

std::optional<ChannelFailure> ReplayEnd::closeLink(const Channel &held) const
{
    if (held.run.session.isEmpty())
        return {};
    try {
        orderRecorder(ChannelCommand::StopReplay, [&] { close(held); });
        return {};
    } catch (const ChannelFailure &failure) {
        return failure;
    }
}

void ReplayEnd::close(const Channel &held) const
{
    ReplayLink link(held.run, context.timing.callLimit);
    try {
        link.close();
    } catch (const CORBA::SystemException &) { // the next try goes on from there
        context.note(held, [&](Channel &channel) { channel.run.connection = link.connection(); });
        throw;
    }
}

/// One that has gone has nothing to be told.
std::optional<ChannelFailure> ReplayEnd::tell(const Channel &held, const ChannelManager::Calls &calls) const
{
    try {
        context.channelManager(held).ask(calls);
    } catch (const ChannelFailure &failure) {
        if (failure.number() != failure::channelManagerGone)
            return failure;
    }
    return {};
}

} // namespace installation
