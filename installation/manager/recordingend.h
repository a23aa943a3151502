#pragma once

#include "installation/manager/leftrecordings.h"

namespace installation
{

/// Ends recordings: at the source, at the recorder, and towards the channel manager.
///
/// Thread: any; each call is limited.
class RecordingEnd
{
public:
    /// What cannot be ended is left to @p left.
    RecordingEnd(const RunContext &context, LeftRecordings &left) : context(context), left(left) {}

    /// Ends the run that the caller holds in RecordStopping. A recorder that does not answer, or refuses the comment,
    /// leaves the run as it was, unless @p forced: then the channel is free, and the recording ends when it can be ended.
    /// @throws ChannelFailure
    void finish(const Channel &held, const QString &comment, bool forced) const;
    /// Takes back what has been begun of a run. False when it may still record.
    bool undo(const Channel &held) const;

private:
    void leave(const Channel &held, bool mayRecord) const;
    bool mayGoOn(const Channel &held, const ChannelFailure &failed) const;
    void keepComment(const Channel &held, const QString &comment) const;
    std::optional<ChannelFailure> endSession(const Channel &held, const QString &comment) const;

    const RunContext &context;
    LeftRecordings &left;
};

} // namespace installation
