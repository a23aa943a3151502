#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

#include <optional>

namespace korvectl
{

/// The folder that files of a record are fetched into, and how far they are there.
///
/// What has come of a file is kept as NAME.part until it is whole. A folder is of one export at a time, in all processes.
/// Errors: throws Failure for a name that is none of a file, and for what the disk refuses.
class ExportFolder
{
public:
    /// Makes the folder where it is missing. @throws Failure also while another export goes on there.
    explicit ExportFolder(const QString &path);
    ~ExportFolder();
    ExportFolder(const ExportFolder &) = delete;

    /// Whether the name is that of what describes a record.
    static bool isDescription(const QString &name);
    /// How many bytes of the file are there already; nothing when it is as long as that. Links count as nothing there.
    std::optional<quint64> bytesThere(const QString &name, quint64 size) const;
    /// The checksum of the samples that a description tells which has come whole; empty: it tells none.
    QByteArray toldChecksum(const QString &descriptionName) const;
    /// Whether a file is at @p path, rather than a link, and has that size.
    static bool isWholeAt(const QString &path, quint64 size);
    /// Whether a file at @p path is there and has that checksum.
    static bool hasChecksum(const QString &path, const QByteArray &checksum);
    QString partPath(const QString &name) const;
    QString path(const QString &name) const;
    /// The part becomes the file if it has that size, else false.
    bool finish(const QString &name, quint64 size) const;

private:
    void lock();

    const QDir folder;
    int descriptor = -1; ///< of the folder, which is locked as long as it is open
};

} // namespace korvectl
