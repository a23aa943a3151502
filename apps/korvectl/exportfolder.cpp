#include "apps/korvectl/exportfolder.h"

#include "apps/korvectl/failure.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace korvectl
{

namespace
{

quint64 sizeOf(const QString &path)
{
    return static_cast<quint64>(QFileInfo(path).size()); // 0 when there is none
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
    if (name.endsWith(QLatin1String("-meta")))
        return 0;
    if (QFileInfo::exists(path(name)) && sizeOf(path(name)) == size)
        return {};
    const quint64 there = sizeOf(partPath(name));
    return there < size ? there : 0;
}

bool ExportFolder::finish(const QString &name, quint64 size) const
{
    const QString part = partPath(name);
    if (!QFileInfo::exists(part) || sizeOf(part) != size)
        return false;
    // Replaces what is there, which QFile::rename() would not.
    if (std::rename(QFile::encodeName(part).constData(), QFile::encodeName(path(name)).constData()) != 0)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 cannot be renamed to %2: %3.")
                                            .arg(part, path(name), reasonOf(errno)));
    return true;
}

} // namespace korvectl
