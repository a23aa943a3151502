#pragma once

#include <QByteArray>

#include <sys/types.h>

namespace installation::recorder
{

/// Has the disk of the recorder in this process refuse what is written with that `errno`, until it is told otherwise (0).
/// It is for fault scripts.  Thread: any.
void setDiskError(int error);
/// Whether that is the error of a full one.
bool isDiskFull();

/// As `::write` of the bytes from @p offset on; -1 with the disk's error in `errno` while it is to refuse.
ssize_t writeToDisk(int descriptor, const QByteArray &bytes, qint64 offset);

} // namespace installation::recorder
