#include "installation/manager/replaychoice.h"

#include "installation/manager/channelfailure.h"

#include <algorithm>

namespace installation
{

namespace
{

using Candidates = std::vector<Channel *>;

/// Keeps those for which @p holds; fails with @p number when that leaves none.
template <typename Condition> void narrow(Candidates &candidates, Condition holds, quint32 number, const char *reason)
{
    std::erase_if(candidates, [&](const Channel *channel) { return !holds(*channel); });
    if (candidates.empty())
        throw ChannelFailure(number, QLatin1String(reason));
}

void narrowToType(Candidates &candidates, TQ_KRV::interfaceTypeEnum type)
{
    const bool isXg = type == TQ_KRV::TQXG_IF;
    narrow(
        candidates,
        [&](const Channel &channel) {
            return channel.settings.interfaceType == type && (!isXg || !channel.settings.channelManager.isEmpty());
        },
        isXg ? failure::noXgInterface : failure::unknownChannel, "no channel has such an interface");
}

} // namespace

Channel &channelForReplay(ChannelList &channels, const QString &deviceId, std::optional<TQ_KRV::interfaceTypeEnum> type)
{
    Candidates candidates;
    for (Channel &channel : channels)
        candidates.push_back(&channel);
    narrow(
        candidates, [&](const Channel &channel) { return channel.settings.allows(deviceId); }, failure::unknownChannel,
        "no channel is registered for the device");
    if (type)
        narrowToType(candidates, *type);
    narrow(
        candidates, [](const Channel &channel) { return channel.settings.replay; }, failure::notEnabledForReplay,
        "no channel is enabled for replay");
    narrow(
        candidates, [](const Channel &channel) { return channel.run.isIdle(); }, failure::resources,
        "all channels are busy");
    return *candidates.front();
}

void refuseSecondReplay(const ChannelList &channels, const QString &deviceId, const QString &recordId)
{
    const bool isReplayed = std::any_of(channels.begin(), channels.end(), [&](const Channel &channel) {
        return channel.run.isReplay() && channel.run.deviceId == deviceId && channel.run.recordId == recordId;
    });
    if (isReplayed)
        throw ChannelFailure(failure::wrongState, QStringLiteral("record %1 is being replayed").arg(recordId));
}

void checkSection(quint64 begin, quint64 end)
{
    if (begin == 0 && end == 0)
        throw ChannelFailure(failure::positionsEmpty, QStringLiteral("both positions are 0"));
    if (begin == end)
        throw ChannelFailure(failure::positionsEqual, QStringLiteral("both positions are %1").arg(begin));
    if (begin > end)
        throw ChannelFailure(failure::positionsReversed,
                             QStringLiteral("position %1 lies behind %2").arg(begin).arg(end));
}

} // namespace installation
