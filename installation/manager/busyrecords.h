#pragma once

#include "installation/manager/recordstate.h"

#include <QVector>

namespace installation
{

/// The records that are not idle, as a manager last heard, in the SQLite file `busyrecords.sqlite` of its folder: what
/// it compares with after its restart.
///
/// A file that is damaged or not ours is traced, put aside as `busyrecords.sqlite.refused`, and begun anew.
/// Thread: any, one at a time; blocks for the disk.  Errors: throws std::runtime_error that names file and reason.
class BusyRecords
{
public:
    /// Makes folder and file if they are missing.
    explicit BusyRecords(const QString &folder);

    QVector<RecordState> load() const;
    /// Keeps a record that is busy, forgets one that is idle. Returns when that is on the disk.
    void save(const RecordState &state) const;

private:
    const QString path;
};

} // namespace installation
