#include "apps/korvectl/receiverchannel.h"

#include "common/errornumber.h"

#include <algorithm>
#include <iterator>

namespace korvectl
{

namespace
{

/// The manager's number when there are as many channels as there can be.
constexpr unsigned long noRoomForChannels = 703;

QStringList idleChannelsOfOurs(const ChannelStates &states)
{
    QStringList ids;
    const QVector<ChannelState> all = states.channels();
    for (const ChannelState &state : all)
        if (isNameOfOurs(state.name) && state.isIdle())
            ids << state.id;
    return ids;
}

/// The ids of those channels of this program that stay idle for as long as a command may take: nobody is about to use
/// these.
QStringList abandonedChannels(const ChannelStates &states)
{
    const QStringList before = idleChannelsOfOurs(states);
    QStringList abandoned;
    states.waitUntil([&] {
        const QStringList now = idleChannelsOfOurs(states);
        abandoned.clear();
        std::copy_if(before.begin(), before.end(), std::back_inserter(abandoned),
                     [&now](const QString &id) { return now.contains(id); });
        return abandoned.isEmpty();
    });
    return abandoned;
}

} // namespace

Answer ReceiverChannel::add(const ChannelWish &wish)
{
    const Answer answer = calls.add(wish);
    return answer.number == noRoomForChannels && removeLeftOvers() ? calls.add(wish) : answer;
}

bool ReceiverChannel::removeLeftOvers() const
{
    const QStringList ids = abandonedChannels(states);
    for (const QString &id : ids) {
        ChannelCalls leftOver = calls;
        if (leftOver.find(id).number == korve::errornumber::success)
            leftOver.remove();
    }
    return !ids.isEmpty();
}

Answer ReceiverChannel::start(const ReplayPart &part)
{
    // A channel that is left of an earlier replay is shown as it was until the registration has reached the mirror.
    const auto before =
        states.waitFor([this](const ChannelState &state) { return state.id == id() && state.isEnabledForReplay; });
    Answer answer{korve::errornumber::transient, false};
    if (before)
        answer = calls.startReplaying(part);
    if (before && answer.number == korve::errornumber::success)
        answer = resultOfStart(part, before->error);
    if (answer.number != korve::errornumber::success && !answer.isUnknown)
        calls.remove();
    return answer;
}

Answer ReceiverChannel::resultOfStart(const ReplayPart &part, const QString &errorBefore)
{
    // A start has no answer. A channel that replays refuses this, and in one that does not, this is the last of what the
    // mirror is going to show: an error of the start comes before.
    const bool isReplaying = !calls.disableReplays();
    const auto told = states.waitFor([&](const ChannelState &state) {
        const bool isOurs = state.device == part.device && state.record == part.record;
        return state.id == id() &&
               (state.error != errorBefore || (isReplaying ? isOurs : !state.isEnabledForReplay));
    });
    if (!told)
        return {korve::errornumber::transient, true};
    const bool hasBegun = isReplaying && told->device == part.device && told->record == part.record;
    return {hasBegun || told->error == errorBefore ? korve::errornumber::success : told->errorNumber(), false};
}

void closeLeftOvers(const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler, const ChannelStates &states)
{
    ChannelCalls calls(handler);
    const QVector<ChannelState> all = states.channels();
    for (const ChannelState &state : all) {
        const bool isLeftOver = isNameOfOurs(state.name) && state.isIdle() && !state.record.isEmpty();
        if (isLeftOver && state.isEnabledForReplay && calls.find(state.id).number == korve::errornumber::success)
            calls.disableReplays();
    }
}

} // namespace korvectl
