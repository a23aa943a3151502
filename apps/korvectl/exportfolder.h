#pragma once

#include <QDir>
#include <QString>

#include <optional>

namespace korvectl
{

/// The folder that files of a record are fetched into, and how far they are there.
///
/// What has come of a file is kept as NAME.part until it is whole.
/// Errors: throws Failure for a name that is none of a file, and for what the disk refuses.
class ExportFolder
{
public:
    /// Makes the folder where it is missing.
    explicit ExportFolder(const QString &path);

    /// How many bytes of the file are there already; nothing when it is whole. What describes a record is always
    /// fetched from its beginning, since it changes.
    std::optional<quint64> bytesThere(const QString &name, quint64 size) const;
    QString partPath(const QString &name) const;
    QString path(const QString &name) const;
    /// The part becomes the file if it has that size, else false.
    bool finish(const QString &name, quint64 size) const;

private:
    const QDir folder;
};

} // namespace korvectl
