#pragma once

#include <QByteArray>

#include <sys/types.h>

namespace installation::recorder
{

/// Has the disk of the recorder in this process refuse what is written, as a full one does, until it is told otherwise.
/// It is for fault scripts.  Thread: any.
void setDiskFull(bool isFull);
bool isDiskFull();

/// As `::write` of the bytes from @p offset on; -1 with `ENOSPC` in `errno` while the disk is to be full.
ssize_t writeToDisk(int descriptor, const QByteArray &bytes, qint64 offset);

} // namespace installation::recorder
