#pragma once

#include "installation/manager/channel.h"

namespace installation
{

/// The first channel that can replay on @p deviceId: enabled, allowed for the device, idle, and of @p type if that is
/// given; an interface of the XG kind needs a channel manager besides.
/// @throws ChannelFailure that says which of these fails.
Channel &channelForReplay(ChannelList &channels, const QString &deviceId,
                          std::optional<TQ_KRV::interfaceTypeEnum> type);

/// @throws ChannelFailure when a record is being replayed by one of @p channels.
void refuseSecondReplay(const ChannelList &channels, const QString &deviceId, const QString &recordId);

/// @throws ChannelFailure for positions that are no section.
void checkSection(quint64 begin, quint64 end);

} // namespace installation
