#pragma once

#include "installation/manager/channeldirectory.h"
#include "installation/manager/channelfailure.h"
#include "installation/manager/channelmanager.h"
#include "installation/manager/devicedirectory.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/runwatch.h"

#include <memory>

namespace installation
{

/// What the runs of all channels share: where channels and devices stand, and how a run goes from state to state.
///
/// A state is entered by whoever has seen the one before, so that of two commands at a time one fails, and no lock is
/// held while others are asked.
/// Thread: any.
class RunContext
{
public:
    using State = ChannelRun::State;

    RunContext(std::shared_ptr<ChannelDirectory> channels, std::shared_ptr<const DeviceDirectory> devices,
               const ManagerConfiguration::Timing &timing);

    /// The recorder of a device. @throws ChannelFailure @p number when there is none that could be asked, and @p unknown,
    /// if given, when there is no such device.
    TQ_KORVE::IF_Control_var recorder(const QString &deviceId, quint32 number,
                                      std::optional<quint32> unknown = {}) const;
    ChannelManager channelManager(const Channel &channel) const { return {channel.settings, timing.clientLimit}; }

    /// A run that begins, on a channel that the caller is changing.
    static void begin(Channel &channel, State state);
    /// The channel in its new state; without result when it is not as @p seen any more.
    std::optional<Channel> enter(const Channel &seen, State state) const;
    /// Notes something of the run that the caller holds.
    Channel note(const Channel &held, const std::function<void(Channel &)> &edit) const;
    /// Ends the run that the caller holds.
    void leave(const Channel &held) const;
    /// The channel, as long as that run is the one it has.
    std::optional<Channel> running(const QString &channelId, quint64 runNumber) const;

    /// Traces, and shows with the channel.
    void noteFailure(const QString &channelId, const ChannelFailure &failure) const;

    const std::shared_ptr<ChannelDirectory> channels;
    const std::shared_ptr<const DeviceDirectory> devices;
    const ManagerConfiguration::Timing timing;
};

/// The time of the host, in microseconds since 1970.
quint64 nowUs();

} // namespace installation
