#pragma once

#include "installation/recorder/record.h"

namespace installation::recorder
{

/// A section of a record's samples, in bytes from the first sample on.
struct FilePart {
    quint64 begin = 0; ///< the first byte of it
    quint64 end = 0;   ///< the first one behind it

    bool operator==(const FilePart &) const = default;
};

/// Sections of a record that are taken together.
constexpr int maximumParts = 10'000;

/// What of @p record the sections are, in the same order; such as touch are one in the answer.
/// @throws RecorderError (`ekCOPY_SEQUENCE_INCONSISTENT`) unless they are ascending, apart, not empty, within the record,
/// whole samples, and not too many.
QVector<FilePart> checkedParts(const Record &record, const QVector<FilePart> &parts);

/// The record that the sections @p parts of the samples of @p record make, complete but for id, name and history.
///
/// Its index has an entry where a section begins, the entries within, and one behind the last sample. The bookmarks of
/// its sections keep their times. It is deletable. What SigMF says of samples moves with them, checksums do not.
Record recordOfParts(const Record &record, const QVector<FilePart> &parts);

} // namespace installation::recorder
