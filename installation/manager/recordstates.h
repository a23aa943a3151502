#pragma once

#include "installation/manager/busyrecords.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace installation
{

/// What the records of all recorders are doing, and who hears when that changes. A record that nobody has told of
/// counts as idle, and so does one that is gone.
///
/// Changes come as notifications, one by one, and as lists, which say what was missed. A list that was asked for before
/// a notification came says nothing of that record, since either may be the older.
/// Thread: any; blocks for the disk when something has changed.  Errors: a disk that fails is traced.
class RecordStates
{
public:
    /// Hears of each change once, in their order, after it is on the disk; must be quick and must not call back.
    using Listener = std::function<void(const RecordState &)>;
    using Moment = std::uint64_t;

    RecordStates(const QString &stateFolder, Listener listener);

    void changed(const RecordState &state);

    /// Now, to be remembered before a recorder is asked for its list.
    Moment now();
    /// @p busy are all records of the device that are not idle, as of some time after @p asked.
    void compare(const QString &device, const QVector<RecordState> &busy, Moment asked);

private:
    using Key = std::pair<QString, QString>; ///< device and record

    void take(const RecordState &state);
    QVector<RecordState> nowIdle(const QString &device, const QVector<RecordState> &busy) const;

    const BusyRecords kept;
    const Listener listener;
    std::mutex mutex; // guards what follows, and the order in which the listener hears
    std::map<Key, RecordState> busyRecords;
    std::map<Key, Moment> notified; ///< since the last list of that device
    Moment moment = 0;
};

} // namespace installation
