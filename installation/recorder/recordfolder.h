#pragma once

#include "installation/recorder/record.h"

#include <QHash>
#include <QStringList>

namespace installation::recorder
{

/// A file that is no record, and why.
struct RefusedFile {
    QString name;
    QString reason;
};

/// One of the files of a record.
struct RecordFile {
    QString name;
    QString path;
    quint64 sizeBytes = 0;
};

/// The records of a recorder as files of one folder: `ID.sigmf-data` and `ID.sigmf-meta`.
///
/// A record exists from the moment its meta data has its name, until it has it no more; both happen in one step, so
/// that an end of the process at any moment leaves every record as it was before or after a change.
/// Thread: the store's.  Errors: throws RecorderError.
class RecordFolder
{
public:
    /// By what a change of a record's files is seen without reading them.
    struct Stamp {
        qint64 modifiedNs = 0;
        quint64 inode = 0;
        quint64 metaSizeBytes = 0;
        quint64 dataSizeBytes = 0;

        bool operator==(const Stamp &) const = default;
    };

    /// Of meta data that is read, so that none is written that has more.
    static constexpr qint64 maximumMetaBytes = 64 << 20;
    /// The same after a change from outside: whatever was noted of a recording, its end must find room.
    static constexpr qint64 maximumChangedBytes = maximumMetaBytes - (1 << 20);

    /// Makes the folder if it is missing, and completes or takes back what the process before did not finish.
    explicit RecordFolder(const QString &path);

    /// Where the samples of a record to come are written; nothing else has this name.
    QString incomingPath(const QString &id) const { return dataPath(id) + partEnding(); }
    /// Where the samples of a record are.
    QString dataPath(const QString &id) const;
    /// Makes a record of samples that are on the disk at incomingPath().
    void adopt(const Record &record);
    void discardIncoming(const QString &id);
    /// Makes a closed record of a recording: the samples are those at incomingPath() if there are any, else those that it
    /// has, cut at the size of @p record.
    void close(const Record &record);
    /// Writes new meta data of a record that exists.
    /// @throws RecorderError also (`ekRESSOURCES_EXHAUSTED`) when that would have more than @p mostBytes.
    void replace(const Record &record, qint64 mostBytes = maximumMetaBytes);
    void remove(const QString &id);

    /// All that could be records, by the names of their meta data.
    QStringList ids() const;
    /// Files that belong to no record, but for those at incomingPath() of the records that @p isWritten names.
    QVector<RefusedFile> strangers(const std::function<bool(const QString &id)> &isWritten) const;
    bool hasMetaData(const QString &id) const;
    /// @throws RecorderError also when one of the two files is missing.
    Stamp stamp(const QString &id) const;
    Record read(const QString &id) const;
    QVector<RecordFile> files(const QString &id) const;
    bool isFree(const QString &id) const;
    const QString &path() const { return folder; }
    static QString metaName(const QString &id);

private:
    static QString partEnding();
    QString metaPath(const QString &id) const;
    QString removedPath(const QString &id) const;
    void writeMetaPart(const Record &record, qint64 mostBytes) const;
    void settleSamples(const Record &record) const;
    void nameMetaPart(const QString &id) const;
    void recover() const;
    void clearAway(const QString &id) const;
    void finishRemovals() const;
    void settleMetaParts() const;
    void completeAdoption(const QString &id, const QString &part) const;
    QStringList idsOf(const QString &ending) const;

    const QString folder;
};

} // namespace installation::recorder
