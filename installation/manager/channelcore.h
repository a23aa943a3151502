#pragma once

#include "installation/manager/recordingrun.h"
#include "installation/manager/replayrun.h"

namespace installation
{

/// The channels of a manager and their runs, shared by the objects that serve them.
///
/// Thread: any.
class ChannelCore
{
public:
    ChannelCore(std::shared_ptr<ChannelDirectory> channels, std::shared_ptr<const DeviceDirectory> devices,
                const ManagerConfiguration &configuration);

    /// Looks after what an earlier manager has left running.
    void resume();
    /// Ends what the channel is doing, whatever others say to that.
    void stopByForce(const Channel &channel);

    const bool hasArchive;
    const RunContext context;
    LeftRecordings left;
    ReplayRun replays;
    RecordingRun recordings;
    RunWatch watch; // last: its threads use what stands above
};

} // namespace installation
