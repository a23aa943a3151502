#pragma once

#include "installation/manager/runcontext.h"

#include <vector>

namespace installation
{

/// Recordings that were to end while their recorders could not be told, and that no channel knows of any more. Each is
/// ended as soon as its recorder answers again.
///
/// They are kept in the SQLite file `leftrecordings.sqlite` of the manager's folder, so that a manager that starts again
/// ends them, too. A file that is damaged or not ours is put aside as `leftrecordings.sqlite.refused`.
/// Thread: any; blocks for the disk. Recorders are asked on threads of RunWatch.  Errors: a disk that fails is traced;
/// then only this manager knows of the recording.
class LeftRecordings
{
public:
    /// @throws std::runtime_error when the folder cannot be used.
    LeftRecordings(const QString &stateFolder, const RunContext &context, RunWatch &watch);

    /// Looks after those that an earlier manager has left.
    void resume();
    /// @p run has a session and a record, and may go on.
    void add(const ChannelRun &run);

private:
    std::vector<ChannelRun> load() const;
    void save(const ChannelRun &run) const;
    void forget(const ChannelRun &run) const;
    void lookAfter(const ChannelRun &run);
    bool isEnded(const ChannelRun &run) const;

    const QString path;
    const RunContext &context;
    RunWatch &watch;
    mutable std::mutex mutex; // one use of the file at a time
};

} // namespace installation
