#pragma once

#include "connectionmanagement/channelstate.h"
#include "korvebase/korvebase_export.h"

#include <QString>

namespace KorveCommon
{
/// Hears of the states of all devices' records, on the main thread. May remove itself meanwhile.
class KORVEBASE_EXPORT IChannelStateChangedListener
{
public:
    virtual ~IChannelStateChangedListener() = default;
    virtual void NotifyChannelStateChanged(const QString &deviceId, const QString &recordId, const QString &recordName,
                                           const ChannelState::State &state) = 0;
};
} // namespace KorveCommon
