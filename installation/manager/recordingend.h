#pragma once

#include "installation/manager/runcontext.h"

namespace installation
{

/// Ends recordings: at the source, at the recorder, and towards the channel manager.
///
/// Thread: any; each call is limited.
class RecordingEnd
{
public:
    explicit RecordingEnd(const RunContext &context) : context(context) {}

    /// Ends the run that the caller holds in RecordStopping. A recorder that does not answer, or refuses the comment,
    /// leaves the run as it was, unless @p forced.
    /// @throws ChannelFailure
    void finish(const Channel &held, const QString &comment, bool forced) const;
    /// Takes back what has been begun of a run; whatever fails is left to the recorder. False when it may still record.
    bool undo(const Channel &held) const;

private:
    bool mayGoOn(const Channel &held, const ChannelFailure &failed) const;
    void keepComment(const Channel &held, const QString &comment) const;
    std::optional<ChannelFailure> endSession(const Channel &held, const QString &comment) const;

    const RunContext &context;
};

} // namespace installation
