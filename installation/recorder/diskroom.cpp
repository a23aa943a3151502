#include "installation/recorder/diskroom.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace installation::recorder
{

namespace
{
std::atomic<bool> diskIsFull = false;
}

void setDiskFull(bool isFull)
{
    diskIsFull = isFull;
}

bool isDiskFull()
{
    return diskIsFull.load(std::memory_order_relaxed);
}

ssize_t writeToDisk(int descriptor, const QByteArray &bytes, qint64 offset)
{
    if (isDiskFull()) {
        errno = ENOSPC;
        return -1;
    }
    return ::write(descriptor, bytes.constData() + offset, bytes.size() - offset);
}

} // namespace installation::recorder
