#include "installation/manager/channelcore.h"

namespace installation
{

ChannelCore::ChannelCore(std::shared_ptr<ChannelDirectory> channels, std::shared_ptr<const DeviceDirectory> devices,
                         const ManagerConfiguration &configuration)
    : hasArchive(configuration.archive.has_value()),
      context(std::move(channels), std::move(devices), configuration.timing),
      left(configuration.stateFolder, context, watch), replays(context, watch), recordings(context, watch, left),
      watch(configuration.timing.runInterval)
{
}

void ChannelCore::resume()
{
    left.resume();
    for (const Channel &channel : context.channels->list()) {
        if (channel.run.isReplay())
            replays.resume(channel);
        else if (channel.run.isRecording())
            recordings.resume(channel);
    }
}

void ChannelCore::stopByForce(const Channel &channel)
{
    try {
        if (channel.run.isReplay())
            replays.stopChannel(channel, true);
        else if (channel.run.isRecording())
            recordings.stopChannel(channel, {}, true);
    } catch (const ChannelFailure &) { // noted, and the run has ended all the same
    }
}

} // namespace installation
