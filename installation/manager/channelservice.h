#pragma once

#include "installation/manager/channelobjects.h"

namespace installation
{

/// Serves the channels of a manager: `TQ_KRV::IF_KRV_c_Chan` under the key "KorveChannel/ID" each, and
/// `TQ_KRV::IF_KORVE_Replay` under "KorveManagerReplay".
///
/// Thread: any; a registration may wait, limited, for a channel manager that has gone.
class ChannelService
{
public:
    struct Registered {
        TQ_KRV::IF_KRV_c_Chan_ptr reference; ///< the caller releases it
        QString id;
    };

    /// Takes up the channels that are kept in the folder of @p configuration, and what they were doing.
    /// @throws std::runtime_error when the folder cannot be used.
    ChannelService(const ManagerConfiguration &configuration, const ServedObjects &served,
                   std::shared_ptr<const DeviceDirectory> devices, ChannelDirectory::Listener listener);
    /// As stop().
    ~ChannelService();
    ChannelService(const ChannelService &) = delete;

    /// Looks after no run any more, and tells the channel managers, each with a limit. Leaves recorders alone: what runs
    /// there goes on. The objects end with those of their service. Any number of times, but by one thread.
    void stop();

    /// One of the same name at the same endpoint is the same channel, with other settings from now on, unless it belongs
    /// to another program that is still there.
    /// @throws TQ_KRV::exGen
    Registered registerChannel(const ChannelSettings &settings);
    /// Nil for an unknown id; the caller releases it.
    TQ_KRV::IF_KRV_c_Chan_ptr channel(const QString &id) const { return objects->find(id); }
    /// Nil for an unknown device; the caller releases it.
    TQ_KRV::IF_KORVE_Replay_ptr replay(const QString &deviceId) const;

private:
    QString addOrRenew(const ChannelSettings &settings);
    bool hasProgram(const Channel &channel) const;
    void tellAll(const std::function<void(TQ_KRV::IF_KRV_c_ChanMan_ptr)> &calls) const;

    const std::shared_ptr<ChannelCore> core;
    const std::shared_ptr<ChannelObjects> objects;
    std::shared_ptr<Activation> replays;
    bool stopped = false;
};

} // namespace installation
