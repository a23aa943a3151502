#pragma once

#include "installation/manager/runcontext.h"

namespace installation
{

/// Ends replays: at the recorder, and towards the channel manager.
///
/// Thread: any; each call is limited.
class ReplayEnd
{
public:
    explicit ReplayEnd(const RunContext &context) : context(context) {}

    /// Ends the run that the caller holds in ReplayStopping. What the channel manager complains about is thrown when
    /// the replay has ended. A recorder that does not answer leaves the run in state @p before, unless @p forced.
    /// @throws ChannelFailure
    void finish(const Channel &held, ChannelRun::State before, bool forced) const;
    /// Takes back what has been begun of a run; whatever fails is left to the recorder. False when it may still play.
    bool undo(const Channel &held) const;

private:
    void finishXg(const Channel &held) const;
    void finishLink(const Channel &held, ChannelRun::State before, bool forced) const;
    std::optional<ChannelFailure> closeLink(const Channel &held) const;
    void close(const Channel &held) const;
    std::optional<ChannelFailure> tell(const Channel &held, const ChannelManager::Calls &calls) const;

    const RunContext &context;
};

} // namespace installation
