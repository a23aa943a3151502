#include "installation/recorder/diskroom.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace installation::recorder
{

namespace
{
std::atomic<int> diskError = 0;
}

void setDiskError(int error)
{
    diskError = error;
}

bool isDiskFull()
{
    return diskError.load(std::memory_order_relaxed) == ENOSPC;
}

ssize_t writeToDisk(int descriptor, const QByteArray &bytes, qint64 offset)
{
    if (const int error = diskError.load(std::memory_order_relaxed)) {
        errno = error;
        return -1;
    }
    return ::write(descriptor, bytes.constData() + offset, bytes.size() - offset);
}

} // namespace installation::recorder
