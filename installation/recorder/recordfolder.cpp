#include "installation/recorder/recordfolder.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recorddocument.h"
#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/recordfolder";
const QString metaEnding = QStringLiteral(".sigmf-meta");
const QString dataEnding = QStringLiteral(".sigmf-data");
const QString part = QStringLiteral(".part");
const QString removedEnding = metaEnding + QStringLiteral(".removed");

RecorderError corrupted(const QString &reason)
{
    return {TQ_KORVE::ekRECORD_CORRUPTED, reason};
}

/// A recording has samples that its meta data does not know yet; a loop may have been put in order without that.
bool isRecordingOf(const Record &record, quint64 dataSizeBytes)
{
    return record.status == KORVE_XML::KORVE_RecordData::RECORDING &&
           (dataSizeBytes >= record.sizeBytes || dataSizeBytes == record.sizeBytes - record.startPosition);
}

void requireSize(const Record &record, quint64 dataSizeBytes, const QString &name)
{
    if (record.sizeBytes != dataSizeBytes && !isRecordingOf(record, dataSizeBytes))
        throw corrupted(QStringLiteral("%1 has %2 bytes instead of %3")
                            .arg(name, QString::number(dataSizeBytes), QString::number(record.sizeBytes)));
}

QStringList filesOf(const QString &folder)
{
    // System finds links without a target and pipes, which QDir does not count as files.
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

} // namespace

QString RecordFolder::partEnding()
{
    return part;
}

QString RecordFolder::metaName(const QString &id)
{
    return id + metaEnding;
}

QString RecordFolder::metaPath(const QString &id) const
{
    return folder + QLatin1Char('/') + id + metaEnding;
}

QString RecordFolder::dataPath(const QString &id) const
{
    return folder + QLatin1Char('/') + id + dataEnding;
}

QString RecordFolder::removedPath(const QString &id) const
{
    return folder + QLatin1Char('/') + id + removedEnding;
}

RecordFolder::RecordFolder(const QString &path) : folder(QDir(path).absolutePath())
{
    if (!QDir().mkpath(folder))
        throw RecorderError(TQ_KORVE::ekRECORD_ACCESS_FAILED, QStringLiteral("cannot make the folder %1").arg(folder));
    recover();
}

void RecordFolder::adopt(const Record &record)
{
    requireSize(record, fileStatus(incomingPath(record.id)).st_size, incomingPath(record.id));
    writeMetaPart(record, maximumMetaBytes);
    renameFile(incomingPath(record.id), dataPath(record.id));
    syncFolder(folder); // both names of the samples must not be lost, so the record comes after
    nameMetaPart(record.id);
}

void RecordFolder::close(const Record &record)
{
    writeMetaPart(record, maximumMetaBytes); // first: without room for it the samples stay as the record knows them
    settleSamples(record);
    nameMetaPart(record.id);
}

void RecordFolder::settleSamples(const Record &record) const
{
    if (QFileInfo::exists(incomingPath(record.id))) {
        renameFile(incomingPath(record.id), dataPath(record.id));
        syncFolder(folder);
    } else if (quint64(fileStatus(dataPath(record.id)).st_size) != record.sizeBytes) {
        File samples = File::openForChange(dataPath(record.id));
        samples.truncate(record.sizeBytes);
        samples.sync();
    }
}

void RecordFolder::discardIncoming(const QString &id)
{
    removeFile(incomingPath(id));
    if (!QFileInfo::exists(metaPath(id))) { // an adoption that failed half-way
        removeFile(metaPath(id) + part);
        removeFile(dataPath(id));
    }
}

void RecordFolder::replace(const Record &record, qint64 mostBytes)
{
    writeMetaPart(record, mostBytes);
    nameMetaPart(record.id);
}

void RecordFolder::writeMetaPart(const Record &record, qint64 mostBytes) const
{
    const QByteArray document = toDocument(record);
    if (document.size() > mostBytes)
        throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED,
                            QStringLiteral("the meta data would have %1 bytes, more than %2")
                                .arg(QString::number(document.size()), QString::number(mostBytes)));
    const QString metaPart = metaPath(record.id) + part;
    try {
        writeWhole(metaPart, document);
    } catch (const RecorderError &) {
        removeFile(metaPart); // on a full disk it would keep the room that the next attempt needs
        throw;
    }
}

void RecordFolder::nameMetaPart(const QString &id) const
{
    renameFile(metaPath(id) + part, metaPath(id));
    syncFolder(folder);
}

void RecordFolder::remove(const QString &id)
{
    renameFile(metaPath(id), removedPath(id));
    syncFolder(folder);
    try {
        clearAway(id);
    } catch (const RecorderError &error) { // the record is gone all the same, and the next start tries again
        traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
    }
}

void RecordFolder::clearAway(const QString &id) const
{
    removeFile(dataPath(id));
    removeFile(incomingPath(id)); // of a loop that could not be closed
    removeFile(removedPath(id));
}

QStringList RecordFolder::idsOf(const QString &ending) const
{
    QStringList ids;
    for (const QString &name : filesOf(folder))
        if (name.endsWith(ending) && name.size() > ending.size())
            ids.append(name.chopped(ending.size()));
    return ids;
}

QStringList RecordFolder::ids() const
{
    return idsOf(metaEnding);
}

QVector<RefusedFile> RecordFolder::strangers(const std::function<bool(const QString &)> &isWritten) const
{
    const QStringList names = filesOf(folder);
    const QSet<QString> known(names.cbegin(), names.cend());
    QVector<RefusedFile> strangers;
    for (const QString &name : names) {
        if (name.endsWith(metaEnding) && name.size() > metaEnding.size())
            continue; // ids() has it
        if (name.endsWith(dataEnding + part) && isWritten(name.chopped((dataEnding + part).size())))
            continue;
        if (!name.endsWith(dataEnding))
            strangers.append({name, QStringLiteral("not a file of a record")});
        else if (!known.contains(name.chopped(dataEnding.size()) + metaEnding))
            strangers.append({name, QStringLiteral("samples without meta data")});
    }
    return strangers;
}

bool RecordFolder::hasMetaData(const QString &id) const
{
    return QFileInfo::exists(metaPath(id));
}

RecordFolder::Stamp RecordFolder::stamp(const QString &id) const
{
    const struct stat meta = fileStatus(metaPath(id));
    const struct stat data = fileStatus(dataPath(id));
    return {meta.st_mtim.tv_sec * 1'000'000'000LL + meta.st_mtim.tv_nsec, static_cast<quint64>(meta.st_ino),
            static_cast<quint64>(meta.st_size), static_cast<quint64>(data.st_size)};
}

Record RecordFolder::read(const QString &id) const
{
    const QString name = metaName(id);
    Record record = fromDocument(readWhole(metaPath(id), maximumMetaBytes), name);
    if (record.id != id)
        throw corrupted(QStringLiteral("%1 is the meta data of record \"%2\"").arg(name, record.id));
    requireSize(record, fileStatus(dataPath(id)).st_size, id + dataEnding);
    return record;
}

QVector<RecordFile> RecordFolder::files(const QString &id) const
{
    QVector<RecordFile> files;
    for (const QString &path : {metaPath(id), dataPath(id)})
        files.append({QFileInfo(path).fileName(), path, static_cast<quint64>(fileStatus(path).st_size)});
    return files;
}

bool RecordFolder::isFree(const QString &id) const
{
    return QDir(folder).entryList({id + QStringLiteral(".*")}, QDir::AllEntries | QDir::Hidden | QDir::System).isEmpty();
}

void RecordFolder::recover() const
{
    for (const QString &id : idsOf(dataEnding + part))
        if (!hasMetaData(id)) // else a loop is put in order there
            removeFile(incomingPath(id));     // nobody was told of it
    finishRemovals();
    settleMetaParts();
    syncFolder(folder);
}

void RecordFolder::finishRemovals() const
{
    for (const QString &id : idsOf(removedEnding))
        clearAway(id);
}

void RecordFolder::settleMetaParts() const
{
    for (const QString &id : idsOf(metaEnding + part)) {
        const QString metaPart = metaPath(id) + part;
        if (!hasMetaData(id) && QFileInfo::exists(dataPath(id)))
            completeAdoption(id, metaPart);
        removeFile(metaPart);
    }
}

/// The samples were complete before they got their name, and the meta data before that.
void RecordFolder::completeAdoption(const QString &id, const QString &metaPart) const
{
    try {
        fromDocument(readWhole(metaPart, maximumMetaBytes), metaPart);
        renameFile(metaPart, metaPath(id));
    } catch (const RecorderError &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
    }
}

} // namespace installation::recorder
