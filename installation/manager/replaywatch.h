#pragma once

#include "installation/manager/replayend.h"

namespace installation
{

/// Looks after replays: where they are, and whether they have come to their end, which it then makes known.
///
/// Thread: any; the looks are taken on threads of RunWatch.
class ReplayWatch
{
public:
    ReplayWatch(const RunContext &context, RunWatch &watch) : context(context), watch(watch), end(context) {}

    void lookAfter(const Channel &channel);
    /// Finds out what has become of a replay that an earlier manager has begun, and looks after it again.
    void resume(const Channel &channel);

private:
    enum class Finding { Unknown, Gone, Paused, Running };

    bool look(const QString &channelId, quint64 runNumber) const;
    void showPosition(const Channel &channel) const;
    Finding find(const Channel &channel) const;
    void finish(const Channel &channel, const std::optional<ChannelFailure> &cause) const;
    void tellFault(const Channel &channel, const ChannelFailure &fault) const;
    bool adopt(const QString &channelId, quint64 runNumber, bool &isAdopted) const;

    using State = ChannelRun::State;

    const RunContext &context;
    RunWatch &watch;
    const ReplayEnd end;
};

} // namespace installation
