#pragma once

#include "installation/manager/recordingend.h"

namespace installation
{

/// Looks after recordings: how large they are, and whether they have come to their end, which it then makes known; and
/// ends those that are to last a certain time.
///
/// Thread: any; the looks are taken on threads of RunWatch.
class RecordingWatch
{
public:
    RecordingWatch(const RunContext &context, RunWatch &watch, LeftRecordings &left)
        : context(context), watch(watch), end(context, left)
    {
    }

    void lookAfter(const Channel &channel);
    /// Finds out what has become of a recording that an earlier manager has begun, and looks after it again.
    void resume(const Channel &channel);

private:
    enum class Finding { Unknown, Gone, Recording };

    bool look(const QString &channelId, quint64 runNumber) const;
    Finding find(const Channel &channel) const;
    void finish(const Channel &channel, bool isGone) const;
    void tellTrouble(const Channel &channel) const;
    QString troubleOf(const Channel &channel) const;
    bool adopt(const QString &channelId, quint64 runNumber, bool &isAdopted) const;

    using State = ChannelRun::State;

    const RunContext &context;
    RunWatch &watch;
    const RecordingEnd end;
};

} // namespace installation
