#include "installation/recorder/recordstore.h"

#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingbook.h"

#include "coresupport/trace.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>

#include <sys/statvfs.h>

#include <cerrno>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/recordstore";

QString catalogueIn(const QString &path)
{
    return path + QLatin1String("/catalogue.sqlite");
}

/// Sorts by time, and is not given a second time after a removal.
QString newId()
{
    return QStringLiteral("R%1-%2").arg(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-hhmmss")),
                                        QString::number(QRandomGenerator::system()->generate(), 16)
                                            .rightJustified(8, QLatin1Char('0')));
}

/// The lock of the folder @p path, which is made if it is missing.
File lockOf(const QString &path)
{
    if (!QDir().mkpath(path))
        throw RecorderError(TQ_KORVE::ekRECORD_ACCESS_FAILED, QStringLiteral("cannot make the folder %1").arg(path));
    File lock = File::create(path + QLatin1String("/lock"));
    if (!lock.tryLock())
        throw RecorderError(TQ_KORVE::ekRECORD_ACCESS_FAILED,
                            QStringLiteral("%1 is in use by another recorder").arg(path));
    return lock;
}

} // namespace

/// A catalogue that fails is replaced: the change at hand is on the disk already and must not be reported as failed.
template <typename Work> auto RecordStore::withCatalogue(Work work)
{
    try {
        return work();
    } catch (const Catalogue::Error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("catalogue lost (%1); rebuilding it").arg(QString::fromUtf8(error.what())); });
        rebuildCatalogue();
        return work();
    }
}

RecordStore::RecordStore(const QString &path)
    : path(QDir(path).absolutePath()), lock(lockOf(this->path)), folder(this->path + QLatin1String("/recordings")),
      catalogue(std::make_unique<Catalogue>(catalogueIn(this->path)))
{
    withCatalogue([this] { reconcile(); });
    closeRecordings();
    for (const RefusedFile &file : refused())
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("refused %1: %2").arg(file.name, file.reason); });
}

RecordStore::~RecordStore() = default;

RecordStore::Reservation RecordStore::reserve()
{
    QString id = newId();
    while (!folder.isFree(id) || reserved.contains(id))
        id = newId();
    reserved.append(id);
    return {id, folder.incomingPath(id)};
}

void RecordStore::adopt(const Record &record)
{
    if (!reserved.contains(record.id))
        throw RecorderError(TQ_KORVE::ekRECORD_CREATION_FAILED, QStringLiteral("%1 is not reserved").arg(record.id));
    folder.adopt(record);
    reserved.removeAll(record.id);
    index(record);
    tell(Event::Added, record.id, record.name);
}

void RecordStore::abandon(const QString &id)
{
    if (reserved.removeAll(id) > 0)
        folder.discardIncoming(id);
}

void RecordStore::change(const QString &id, const std::function<void(Record &)> &edit)
{
    QString name;
    const auto editNamed = [&](Record &changed) {
        edit(changed);
        name = changed.name;
    };
    update(id, editNamed, RecordFolder::maximumChangedBytes);
    tell(Event::Changed, id, name);
}

void RecordStore::update(const QString &id, const std::function<void(Record &)> &edit)
{
    update(id, edit, RecordFolder::maximumMetaBytes);
}

void RecordStore::update(const QString &id, const std::function<void(Record &)> &edit, qint64 mostBytes)
{
    Record changed = record(id);
    edit(changed);
    folder.replace(changed, mostBytes);
    index(changed);
}

void RecordStore::close(const QString &id, const std::function<void(Record &)> &edit)
{
    Record closed = record(id);
    edit(closed);
    folder.close(closed);
    index(closed);
    tell(Event::Changed, id, closed.name);
}

void RecordStore::discard(const QString &id)
{
    removeFiles(record(id));
}

/// What a process before was recording when it ended.
void RecordStore::closeRecordings()
{
    for (const RecordSummary &record : records()) {
        if (record.status != KORVE_XML::KORVE_RecordData::RECORDING)
            continue;
        try {
            if (record.sizeBytes == 0)
                discard(record.id);
            else if (!closeRecordingInOrder(*this, record))
                loops.append(record);
        } catch (const RecorderError &error) {
            giveUp(record.id, error.text());
        }
    }
}

void RecordStore::giveUp(const QString &id, const QString &reason)
{
    withCatalogue([&] { refuse(id, reason); });
}

void RecordStore::removeFiles(const Record &gone)
{
    folder.remove(gone.id);
    withCatalogue([&] { catalogue->remove(gone.id); });
    tell(Event::Removed, gone.id, gone.name);
}

bool RecordStore::remove(const QString &id)
{
    const Record gone = record(id);
    if (!gone.deletable)
        return false;
    removeFiles(gone);
    return true;
}

QVector<RecordSummary> RecordStore::records()
{
    return withCatalogue([this] { return catalogue->records(); });
}

Record RecordStore::record(const QString &id)
{
    const auto damage = damaged.constFind(id);
    if (damage != damaged.constEnd())
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, *damage);
    if (!withCatalogue([&] { return catalogue->contains(id); }))
        throw RecorderError(TQ_KORVE::ekINVALID_RECORD_ID, QStringLiteral("there is no record \"%1\"").arg(id));
    try {
        return folder.read(id);
    } catch (const RecorderError &error) {
        if (error.kind() == TQ_KORVE::ekRECORD_CORRUPTED)
            giveUp(id, error.text());
        throw;
    }
}

Record RecordStore::recordInOrder(const QString &id)
{
    Record found = record(id);
    if (found.status == KORVE_XML::KORVE_RecordData::RECORDING && found.startPosition > 0)
        throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE,
                            QStringLiteral("the loop \"%1\" is not in order yet").arg(id));
    return found;
}

QVector<RecordFile> RecordStore::files(const QString &id)
{
    recordInOrder(id); // there is one, and it is whole
    return folder.files(id);
}

QVector<RefusedFile> RecordStore::refused() const
{
    QVector<RefusedFile> files = folder.strangers([this](const QString &id) {
        const bool isLoop = folder.hasMetaData(id) && !damaged.contains(id); // one that is put in order
        return isLoop || reserved.contains(id);
    });
    for (auto damage = damaged.cbegin(); damage != damaged.cend(); ++damage)
        files.append({RecordFolder::metaName(damage.key()), damage.value()});
    std::sort(files.begin(), files.end(), [](const auto &a, const auto &b) { return a.name < b.name; });
    return files;
}

RecordStore::Room RecordStore::room() const
{
    struct statvfs status {
    };
    if (::statvfs(QFile::encodeName(folder.path()).constData(), &status) != 0)
        throw RecorderError::ofSystem(errno, QStringLiteral("cannot look at %1").arg(folder.path()));
    return {quint64(status.f_blocks) * status.f_frsize, quint64(status.f_bavail) * status.f_frsize};
}

void RecordStore::index(const RecordSummary &record)
{
    withCatalogue([&] { catalogue->put(record, folder.stamp(record.id)); });
}

void RecordStore::rebuildCatalogue()
{
    catalogue.reset();
    Catalogue::discard(catalogueIn(path));
    catalogue = std::make_unique<Catalogue>(catalogueIn(path));
    try {
        reconcile();
    } catch (const Catalogue::Error &) {
        catalogue = std::make_unique<Catalogue>(Catalogue::inMemory()); // the disk is full, or worse
        reconcile();
    }
}

void RecordStore::reconcile()
{
    catalogue->begin();
    damaged.clear();
    const QHash<QString, RecordFolder::Stamp> indexed = catalogue->stamps();
    const QStringList found = folder.ids();
    for (const QString &id : found)
        takeStock(id, indexed);
    const QSet<QString> present(found.cbegin(), found.cend());
    for (auto row = indexed.cbegin(); row != indexed.cend(); ++row)
        if (!present.contains(row.key()))
            catalogue->remove(row.key());
    catalogue->commit();
}

void RecordStore::takeStock(const QString &id, const QHash<QString, RecordFolder::Stamp> &indexed)
{
    try {
        const RecordFolder::Stamp stamp = folder.stamp(id);
        const auto row = indexed.constFind(id);
        if (row == indexed.cend() || *row != stamp)
            catalogue->put(folder.read(id), stamp);
    } catch (const RecorderError &error) {
        refuse(id, error.text());
    }
}

void RecordStore::refuse(const QString &id, const QString &reason)
{
    traceAt(TraceLevel::Debug, sourceName, [&] { return QStringLiteral("%1: %2").arg(id, reason); });
    damaged.insert(id, reason);
    catalogue->remove(id);
}

} // namespace installation::recorder
