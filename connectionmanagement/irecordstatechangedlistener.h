#pragma once

#include "connectionmanagement/channelstate.h"
#include "korvebase/korvebase_export.h"

#include <QString>

namespace KorveCommon
{
/// Hears of the states of one device's records, on the main thread. May remove itself meanwhile.
class KORVEBASE_EXPORT IRecordStateChangedListener
{
public:
    virtual ~IRecordStateChangedListener() = default;

    // contract: slot order
    virtual void NotifyRecordStateChanged(const QString &recordId, const QString &recordName,
                                          const ChannelState::State &state) = 0;
    /// The id of the device.
    virtual QString GetListenedDevice() = 0;
};
} // namespace KorveCommon
