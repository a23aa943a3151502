#pragma once

#include <QString>

#include <atomic>
#include <mutex>

namespace installation::recorder
{

/// The clock of a device: that of the host, and what somebody has set it ahead or back.
///
/// The distance to the host's clock is a small file and survives a restart. A file that cannot be read counts as none,
/// and is traced. Times are microseconds since 1970, UTC.
/// Thread: any; set() blocks for the disk.  Errors: throws RecorderError.
class DeviceClock
{
public:
    /// The last microsecond of the year 9999: later times cannot be written as a date.
    static constexpr quint64 latestUs = 253'402'300'799'999'999;

    /// Keeps its distance in the file @p path, in a folder that exists when it is set.
    explicit DeviceClock(const QString &path);
    DeviceClock(const DeviceClock &) = delete;

    quint64 nowUs() const;
    /// Returns the time that it shows now; what is set is on the disk then.
    quint64 set(quint64 timeUs);
    /// Whether it shows the host's time, and the host follows a time server.
    bool isSynchronized() const;

private:
    const QString path;
    std::mutex mutex; // one change at a time, so that the file and the distance agree
    std::atomic<qint64> aheadUs = 0;
};

} // namespace installation::recorder
