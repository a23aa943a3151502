#include "apps/korvectl/exportfolder.h"

#include "apps/korvectl/failure.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvectl
{

namespace
{

/// Nothing also for what is there and is no file of its own, such as a link.
std::optional<quint64> sizeOf(const QString &path)
{
    struct stat found = {};
    const bool isFile = ::lstat(QFile::encodeName(path).constData(), &found) == 0 && S_ISREG(found.st_mode);
    return isFile ? std::optional(static_cast<quint64>(found.st_size)) : std::nullopt;
}

/// Names come from another machine: they may not lead elsewhere.
QString checked(const QString &name)
{
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(u'/') || name.contains(QChar::Null))
        throw Failure(ExitCode::Failed, QStringLiteral("The manager offers a file of no usable name, \"%1\".").arg(name));
    return name;
}

} // namespace

ExportFolder::ExportFolder(const QString &path) : folder(path.isEmpty() ? QStringLiteral(".") : path)
{
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(folder.path()).constData(), error);
    if (error)
        throw Failure(ExitCode::Failed, QStringLiteral("The folder %1 cannot be made: %2.")
                                            .arg(folder.path(), QString::fromStdString(error.message())));
    lock();
}

ExportFolder::~ExportFolder()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

void ExportFolder::lock()
{
    descriptor = ::open(QFile::encodeName(folder.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0 || ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return; // where folders cannot be locked, there is no telling
    ::close(descriptor);
    throw Failure(ExitCode::Failed, QStringLiteral("Another export into the folder %1 is going on.").arg(folder.path()));
}

bool ExportFolder::isDescription(const QString &name)
{
    return name.endsWith(QLatin1String("-meta"));
}

QString ExportFolder::path(const QString &name) const
{
    return folder.filePath(checked(name));
}

QString ExportFolder::partPath(const QString &name) const
{
    return path(name) + QLatin1String(".part");
}

std::optional<quint64> ExportFolder::bytesThere(const QString &name, quint64 size) const
{
    if (isWholeAt(path(name), size))
        return {};
    const quint64 there = sizeOf(partPath(name)).value_or(0);
    return there < size ? there : 0;
}

bool ExportFolder::isWholeAt(const QString &path, quint64 size)
{
    return sizeOf(path) == size;
}

QByteArray ExportFolder::toldChecksum(const QString &descriptionName) const
{
    QFile file(path(descriptionName));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject sigmf = QJsonDocument::fromJson(file.readAll()).object();
    const QString digits = sigmf[QStringLiteral("global")][QStringLiteral("core:sha512")].toString();
    return QByteArray::fromHex(digits.toLatin1());
}

bool ExportFolder::hasChecksum(const QString &path, const QByteArray &checksum)
{
    QFile file(path);
    QCryptographicHash sum(QCryptographicHash::Sha512);
    return file.open(QIODevice::ReadOnly) && sum.addData(&file) && sum.result() == checksum;
}

bool ExportFolder::finish(const QString &name, quint64 size) const
{
    const QString part = partPath(name);
    if (!isWholeAt(part, size))
        return false;
    // Replaces what is there, which QFile::rename() would not.
    if (std::rename(QFile::encodeName(part).constData(), QFile::encodeName(path(name)).constData()) != 0)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 cannot be renamed to %2: %3.")
                                            .arg(part, path(name), reasonOf(errno)));
    return true;
}

} // namespace korvectl
