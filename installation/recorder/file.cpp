#include "installation/recorder/file.h"

#include "installation/recorder/diskroom.h"
#include "installation/recorder/recordererror.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace installation::recorder
{

namespace
{

[[noreturn]] void fail(const char *action, const QString &path)
{
    const int error = errno;
    throw RecorderError::ofSystem(error, QStringLiteral("cannot %1 %2").arg(QLatin1String(action), path));
}

int openDescriptor(const QString &path, int flags, const char *action)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0640);
    if (descriptor < 0)
        fail(action, path);
    return descriptor;
}

void requireRegular(const struct stat &status, const QString &path)
{
    if (!S_ISREG(status.st_mode))
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("%1 is no regular file").arg(path));
}

} // namespace

File File::openForReading(const QString &path)
{
    // Without O_NONBLOCK a pipe would hold us here until somebody writes to it.
    File file(openDescriptor(path, O_RDONLY | O_NONBLOCK, "open"), path);
    requireRegular(file.status(), path);
    return file;
}

File File::create(const QString &path)
{
    return File(openDescriptor(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, "create"), path);
}

File File::openForChange(const QString &path)
{
    File file(openDescriptor(path, O_RDWR | O_NONBLOCK | O_NOFOLLOW, "open"), path);
    requireRegular(file.status(), path);
    return file;
}

File File::openToContinue(const QString &path)
{
    File file(openDescriptor(path, O_RDWR | O_CREAT | O_NONBLOCK | O_NOFOLLOW, "open"), path);
    requireRegular(file.status(), path);
    return file;
}

File::File(File &&other) noexcept : descriptor(other.descriptor), path(other.path)
{
    other.descriptor = -1;
}

File::~File()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

bool File::tryLock()
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

void File::write(const QByteArray &bytes)
{
    for (qint64 written = 0; written < bytes.size();) {
        const ssize_t count = writeToDisk(descriptor, bytes, written);
        if (count >= 0)
            written += count;
        else if (errno != EINTR)
            fail("write", path);
    }
}

void File::release(quint64 position, quint64 count)
{
    const int mode = FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE;
    if (count == 0) // for which the system would fail
        return;
    if (::fallocate(descriptor, mode, static_cast<off_t>(position), static_cast<off_t>(count)) != 0 && errno != EOPNOTSUPP)
        fail("write", path);
}

void File::truncate(quint64 size)
{
    if (::ftruncate(descriptor, static_cast<off_t>(size)) != 0)
        fail("write", path);
    seek(size);
}

void File::seek(quint64 position)
{
    if (::lseek(descriptor, static_cast<off_t>(position), SEEK_SET) < 0)
        fail("write", path);
}

void File::sync()
{
    if (::fsync(descriptor) != 0)
        fail("write", path);
}

/// Fills @p maximum bytes by @p readSome(place, count, done), or fewer where the file ends, and returns how many.
template <typename Read> qint64 File::fill(char *target, qint64 maximum, Read readSome) const
{
    qint64 done = 0;
    while (done < maximum) {
        const ssize_t count = readSome(target + done, maximum - done, done);
        if (count == 0)
            break;
        if (count > 0)
            done += count;
        else if (errno != EINTR)
            fail("read", path);
    }
    return done;
}

QByteArray File::read(qint64 maximum)
{
    QByteArray bytes(static_cast<int>(maximum), Qt::Uninitialized);
    bytes.truncate(static_cast<int>(fill(bytes.data(), maximum, [this](char *place, qint64 count, qint64) {
        return ::read(descriptor, place, count);
    })));
    return bytes;
}

QByteArray File::readAt(quint64 position, qint64 maximum) const
{
    QByteArray bytes(static_cast<int>(maximum), Qt::Uninitialized);
    bytes.truncate(static_cast<int>(fill(bytes.data(), maximum, [&](char *place, qint64 count, qint64 done) {
        return ::pread(descriptor, place, count, static_cast<off_t>(position + done));
    })));
    return bytes;
}

void File::readWholeAt(quint64 position, char *target, qint64 count) const
{
    const qint64 done = fill(target, count, [&](char *place, qint64 wanted, qint64 done) {
        return ::pread(descriptor, place, wanted, static_cast<off_t>(position + done));
    });
    if (done != count)
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("%1 became shorter").arg(path));
}

struct stat File::status() const
{
    struct stat status {
    };
    if (::fstat(descriptor, &status) != 0)
        fail("look at", path);
    return status;
}

struct stat fileStatus(const QString &path)
{
    struct stat status {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        fail("look at", path);
    requireRegular(status, path);
    return status;
}

QByteArray readWhole(const QString &path, qint64 maximum)
{
    File file = File::openForReading(path);
    if (file.status().st_size > maximum)
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED,
                            QStringLiteral("%1 is longer than %2 bytes").arg(path, QString::number(maximum)));
    return file.read(file.status().st_size);
}

void writeWhole(const QString &path, const QByteArray &bytes)
{
    File file = File::create(path);
    file.write(bytes);
    file.sync();
}

void renameFile(const QString &from, const QString &to)
{
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        fail("rename", from);
}

void removeFile(const QString &path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        fail("remove", path);
}

void syncFolder(const QString &path)
{
    const int descriptor = openDescriptor(path, O_RDONLY | O_DIRECTORY, "open");
    const int result = ::fsync(descriptor);
    const int error = errno;
    ::close(descriptor);
    if (result != 0)
        throw RecorderError::ofSystem(error, QStringLiteral("cannot write %1").arg(path));
}

} // namespace installation::recorder
