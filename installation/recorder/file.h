#pragma once

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

namespace installation::recorder
{

/// An open file of the local disk, closed at the end of its life. All of it blocks.  Errors: throws RecorderError.
class File
{
public:
    /// A regular file to read; a link, pipe or folder of that name is refused.
    static File openForReading(const QString &path);
    /// One that is there, to read and to write into.
    static File openForChange(const QString &path);
    /// The same, or a new one when there is none; what is in it stays.
    static File openToContinue(const QString &path);
    /// A new file to write, above all one that was not there yet.
    static File create(const QString &path);
    File(File &&other) noexcept;
    ~File();
    File(const File &) = delete;

    /// Keeps other processes from locking it; ends with this object, and with the process.
    bool tryLock();
    void write(const QByteArray &bytes);
    /// Gives the room of these bytes back to the disk; they read as zeros. Nothing happens where disks cannot do that.
    void release(quint64 position, quint64 count);
    void truncate(quint64 size);
    /// What is written next goes there.
    void seek(quint64 position);
    /// Returns when the content is on the disk.
    void sync();
    /// At most @p maximum bytes, fewer at the end of the file alone.
    QByteArray read(qint64 maximum);
    /// The same from @p position on, whatever was read before. May be called by several threads.
    QByteArray readAt(quint64 position, qint64 maximum) const;
    /// The same to @p target, exactly @p count bytes.
    void readWholeAt(quint64 position, char *target, qint64 count) const;
    /// For what the system does with open files; it stays this object's.
    int handle() const { return descriptor; }
    struct stat status() const;

private:
    File(int descriptor, const QString &path) : descriptor(descriptor), path(path) {}
    template <typename Read> qint64 fill(char *target, qint64 maximum, Read readSome) const;

    int descriptor;
    const QString path;
};

/// What is at @p path, a regular file.
struct stat fileStatus(const QString &path);
/// The whole file, which must not be longer than @p maximum.
QByteArray readWhole(const QString &path, qint64 maximum);
/// Writes a file that is complete on the disk when this returns; its name is not yet, see syncFolder().
void writeWhole(const QString &path, const QByteArray &bytes);
/// Gives a file another name; a file that had it is gone.
void renameFile(const QString &from, const QString &to);
/// Removes a file if it is there.
void removeFile(const QString &path);
/// Returns when the names of the files in it are on the disk.
void syncFolder(const QString &path);

} // namespace installation::recorder
