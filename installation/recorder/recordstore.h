#pragma once

#include "installation/recorder/catalogue.h"
#include "installation/recorder/file.h"
#include "installation/recorder/recordfolder.h"

#include <functional>
#include <memory>

namespace installation::recorder
{

/// The records of one recorder: their files, and the catalogue over them.
///
/// A command that returns has its effect on the disk. A file that is damaged or foreign is refused, traced and listed,
/// and never touched; the records beside it are not concerned.
/// Thread: one, from construction to the end; see StoreThread.  Errors: throws RecorderError.
class RecordStore
{
public:
    /// Bytes of the file system that holds the records.
    struct Room {
        quint64 totalBytes = 0;
        quint64 freeBytes = 0;
    };

    /// What a reservation is worth: the samples of the record @p id are to be written to @p samplesPath.
    struct Reservation {
        QString id;
        QString samplesPath;
    };

    enum class Event { Added, Removed, Changed };
    using Observer = std::function<void(Event, const QString &id, const QString &name)>;

    /// Opens, or makes, the store in the folder @p path.
    /// @throws RecorderError also when another process has it open.
    explicit RecordStore(const QString &path);
    ~RecordStore();

    Reservation reserve();
    /// @p record has the id of a reservation, and its samples are on the disk.
    void adopt(const Record &record);
    /// Gives a reservation back, with whatever was written for it.
    void abandon(const QString &id);
    /// Hands the record to @p edit and stores what that makes of it; when it throws nothing is changed.
    /// @throws RecorderError also when the meta data would become greater than RecordFolder::maximumChangedBytes.
    void change(const QString &id, const std::function<void(Record &)> &edit);
    /// Changes a record without a word to the observer.
    void update(const QString &id, const std::function<void(Record &)> &edit);
    /// Changes a recording that is over, as its folder's close() says.
    void close(const QString &id, const std::function<void(Record &)> &edit);
    /// Removes a recording without samples.
    void discard(const QString &id);
    /// False, with nothing changed, for a record that is not deletable.
    bool remove(const QString &id);

    /// @p observer hears of each record that came, changed or went, when that is on the disk.
    void observe(Observer observer) { tell = std::move(observer); }

    /// Recordings of the process before that are loops, which somebody is to put in order and close. All others are
    /// closed.
    const QVector<RecordSummary> &interruptedLoops() const { return loops; }
    /// The record is damaged, for @p reason: it is refused from now on.
    void giveUp(const QString &id, const QString &reason);

    QVector<RecordSummary> records();
    Record record(const QString &id);
    /// The record, for who goes on to read its samples.
    /// @throws RecorderError (`ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE`) for a loop that is not in order yet.
    Record recordInOrder(const QString &id);
    QVector<RefusedFile> refused() const;
    Room room() const;
    /// Where samples are put in order for close().
    QString orderedPath(const QString &id) const { return folder.incomingPath(id); }
    /// The two files of the record @p id, that of its meta data first.
    QVector<RecordFile> files(const QString &id);
    /// Where the samples of the record @p id are.
    QString samplesPath(const QString &id) const { return folder.dataPath(id); }
    /// The folder that holds the files.
    const QString &folderPath() const { return folder.path(); }

private:
    void index(const RecordSummary &record);
    void update(const QString &id, const std::function<void(Record &)> &edit, qint64 mostBytes);
    void closeRecordings();
    void removeFiles(const Record &gone);
    void reconcile();
    void takeStock(const QString &id, const QHash<QString, RecordFolder::Stamp> &indexed);
    void refuse(const QString &id, const QString &reason);
    void rebuildCatalogue();
    template <typename Work> auto withCatalogue(Work work);

    const QString path;
    const File lock; ///< two processes that change the same files would undo each other's changes
    RecordFolder folder;
    std::unique_ptr<Catalogue> catalogue;
    QVector<RecordSummary> loops;
    QHash<QString, QString> damaged; ///< reason by record id
    QStringList reserved;
    Observer tell = [](Event, const QString &, const QString &) {};
};

} // namespace installation::recorder
