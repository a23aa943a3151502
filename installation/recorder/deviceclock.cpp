#include "installation/recorder/deviceclock.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <QFileInfo>

#include <sys/timex.h>

#include <chrono>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/deviceclock";
constexpr qint64 longestText = 32;

quint64 hostUs()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

/// A microsecond count, as the file @p path has it.
qint64 storedDistance(const QString &path)
{
    bool isNumber = false;
    const QByteArray text = readWhole(path, longestText);
    const qint64 distanceUs = text.trimmed().toLongLong(&isNumber);
    if (!isNumber)
        throw RecorderError(TQ_KORVE::ekINVALID_CONFIGURATION, QStringLiteral("%1 holds no number").arg(path));
    return distanceUs;
}

qint64 distanceIn(const QString &path)
{
    if (!QFileInfo::exists(path))
        return 0;
    try {
        return storedDistance(path);
    } catch (const RecorderError &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("The clock shows the host's time: %1").arg(error.text()); });
        return 0;
    }
}

void store(const QString &path, qint64 distanceUs)
{
    const QString part = path + QLatin1String(".part");
    try {
        writeWhole(part, QByteArray::number(distanceUs) + '\n');
        renameFile(part, path);
    } catch (const RecorderError &) {
        removeFile(part);
        throw;
    }
    syncFolder(QFileInfo(path).path());
}

} // namespace

DeviceClock::DeviceClock(const QString &path) : path(path), aheadUs(distanceIn(path)) {}

quint64 DeviceClock::nowUs() const
{
    return hostUs() + static_cast<quint64>(aheadUs.load()); // modulo 2^64, as a distance may be negative
}

quint64 DeviceClock::set(quint64 timeUs)
{
    if (timeUs > latestUs)
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                            QStringLiteral("%1 us lies beyond the year 9999").arg(QString::number(timeUs)));
    const std::scoped_lock lock(mutex);
    const auto distanceUs = static_cast<qint64>(timeUs - hostUs());
    store(path, distanceUs);
    aheadUs = distanceUs;
    return nowUs();
}

bool DeviceClock::isSynchronized() const
{
    timex clock{};
    const int state = ::adjtimex(&clock); // reads only, as no mode is set
    return aheadUs == 0 && state != -1 && state != TIME_ERROR && (clock.status & STA_UNSYNC) == 0;
}

} // namespace installation::recorder
