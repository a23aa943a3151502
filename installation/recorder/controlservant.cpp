#include "installation/recorder/controlservant.h"

#include "installation/recorder/devicefailure.h"
#include "installation/recorder/devicestructures.h"
#include "installation/recorder/diskroom.h"
#include "installation/recorder/notes.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/sessionfailure.h"
#include "installation/recorder/sessionrates.h"

#include "korvebase/corbatodeviceconverter.h"

#include <algorithm>

namespace installation::recorder
{

namespace Converter = KorveCommon::CorbaToDeviceConverter;

namespace
{

QString idOf(const char *recordId)
{
    return QString::fromUtf8(recordId);
}

/// A CORBA sequence of @p list, which the caller owns.
template <typename Sequence, typename Element, typename Convert>
Sequence *toSequence(const QVector<Element> &list, Convert convert)
{
    auto sequence = std::make_unique<Sequence>();
    sequence->length(static_cast<CORBA::ULong>(list.size()));
    for (int i = 0; i < list.size(); ++i)
        (*sequence)[static_cast<CORBA::ULong>(i)] = convert(list.at(i));
    return sequence.release();
}

QString checkedText(const char *operation, const TQ_KORVE::wideText &text)
{
    if (text.length() > ControlServant::longestText)
        throw deviceFailure(operation, {TQ_KORVE::ekINVALID_VALUE,
                                        QStringLiteral("a text of %1 characters is too long").arg(text.length())});
    return fromWideText(text);
}

} // namespace

ControlServant::ControlServant(std::shared_ptr<StoreThread> store, std::shared_ptr<DeviceOperations> operations,
                               std::shared_ptr<Sessions> sessions, std::string firmwareVersion)
    : store(std::move(store)), operations(std::move(operations)), sessions(std::move(sessions)),
      firmwareVersion(std::move(firmwareVersion))
{
}

template <typename Work> auto ControlServant::ask(const char *operation, Work work)
{
    return answerDevice(operation, [&] { return store->ask(std::move(work)); });
}

Record ControlServant::recordOf(const char *operation, Text recordId)
{
    return ask(operation, [id = idOf(recordId)](RecordStore &records) { return records.record(id); });
}

void ControlServant::change(const char *operation, Text recordId, std::function<void(Record &)> edit)
{
    answerChange(operation, [&] {
        store->ask([id = idOf(recordId), edit = std::move(edit)](RecordStore &records) { records.change(id, edit); });
    });
}

void ControlServant::announceNotificationReceiver(Receiver receiver)
{
    sessions->announce(receiver);
}

void ControlServant::removeNotificationReceiver(Receiver receiver)
{
    sessions->notifier().remove(receiver);
}

TQ_KORVE::IF_ReplaySession_ptr ControlServant::getReplaySessionById(Text recordId, Receiver receiver)
{
    return answerDevice("getReplaySessionById", [&] { return sessions->replay(idOf(recordId), receiver, {}); });
}

TQ_KORVE::IF_ReplaySession_ptr ControlServant::getReplaySessionByIdEx(Text recordId, Receiver receiver, Rate rate)
{
    return answerDevice("getReplaySessionByIdEx", [&] {
        return sessions->replay(idOf(recordId), receiver, Converter::convertDataRateClassFromKorve(rate));
    });
}

TQ_KORVE::IF_RecordingSession_ptr ControlServant::createRecordingSession(Rate rate, CORBA::ULong loopMebibytes,
                                                                         Format format, Receiver receiver)
{
    return createRecordingSessionEx(rate, rate, loopMebibytes, format, receiver);
}

TQ_KORVE::IF_RecordingSession_ptr
ControlServant::createRecordingSessionEx(Rate rate, Rate occupied, CORBA::ULong loopMebibytes, Format format, Receiver receiver)
{
    const RecordingWish wish{Converter::convertDataRateClassFromKorve(rate), Converter::convertDataFormatFromKorve(format),
                             quint64(loopMebibytes) << 20};
    return answerDevice("createRecordingSession", [&] {
        return sessions->record(wish, receiver, Converter::convertDataRateClassFromKorve(occupied));
    });
}

void ControlServant::setRecordIdle(Text recordId)
{
    answerDevice("setRecordIdle", [&] { sessions->setIdle(idOf(recordId)); });
}

TQ_KORVE::seqMETA_DATA *ControlServant::getActiveSessions()
{
    const auto records = ask("getActiveSessions", [](RecordStore &store) { return store.records(); });
    return toSequence<TQ_KORVE::seqMETA_DATA>(sessions->active(records), toMetaData);
}

TQ_KORVE::seqMETA_DATA *ControlServant::getActiveSessionsEx3()
{
    return getActiveSessions();
}

ControlServant::Rates *ControlServant::getAvailableDataRateClasses()
{
    return availableRates(sessions->table());
}

ControlServant::Rates *ControlServant::getAvailableDataRateClassesEx()
{
    return getAvailableDataRateClasses();
}

ControlServant::Rates *ControlServant::getAvailableDataRateClassesEx2()
{
    return getAvailableDataRateClasses();
}

ControlServant::Rates *ControlServant::getAvailableDataRateClassesEx3()
{
    return getAvailableDataRateClasses();
}

ControlServant::OccupiedRates *ControlServant::getOccupiedDataRateClasses()
{
    return occupiedRates(sessions->table());
}

ControlServant::OccupiedRates *ControlServant::getOccupiedDataRateClassesEx()
{
    return getOccupiedDataRateClasses();
}

ControlServant::OccupiedRates *ControlServant::getOccupiedDataRateClassesEx2()
{
    return getOccupiedDataRateClasses();
}

ControlServant::OccupiedRates *ControlServant::getOccupiedDataRateClassesEx3()
{
    return getOccupiedDataRateClasses();
}

TQ_KORVE::seqMETA_DATA *ControlServant::listAllRecords()
{
    const auto records = ask("listAllRecords", [](RecordStore &store) { return store.records(); });
    return toSequence<TQ_KORVE::seqMETA_DATA>(
        records, [this](const RecordSummary &record) { return toMetaData(sessions->activities().overlaid(record)); });
}

TQ_KORVE::seqMETA_DATA *ControlServant::listAllRecordsEx2()
{
    return listAllRecords();
}

TQ_KORVE::seqMETA_DATA *ControlServant::listAllRecordsEx3()
{
    return listAllRecords();
}

TQ_KORVE::struMETA_DATA *ControlServant::getMetaData(Text recordId)
{
    return new TQ_KORVE::struMETA_DATA(toMetaData(sessions->activities().overlaid(recordOf("getMetaData", recordId))));
}

TQ_KORVE::struRECORD_DETAILS ControlServant::getRecordDetails(Text recordId)
{
    return toDetails(recordOf("getRecordDetails", recordId));
}

void ControlServant::setRecordComment(Text recordId, const TQ_KORVE::wideText &comment)
{
    const QString name = checkedText("setRecordComment", comment);
    change("setRecordComment", recordId, [name](Record &record) { record.name = name; });
    sessions->activities().rename(idOf(recordId), name);
}

void ControlServant::setDeletableFlagOfRecord(Text recordId)
{
    change("setDeletableFlagOfRecord", recordId, [](Record &record) { record.deletable = true; });
}

void ControlServant::clearDeletableFlagOfRecord(Text recordId)
{
    change("clearDeletableFlagOfRecord", recordId, [](Record &record) { record.deletable = false; });
}

CORBA::Boolean ControlServant::removeRecord(Text recordId)
{
    sessions->forgetEnded(); // a file that is open would keep its room
    // Not the sessions: they own the store thread, which must not be the one that lets them go last.
    const auto activities = sessions->activities().shared_from_this();
    return answerChange("removeRecord", [&] {
        return store->ask([id = idOf(recordId), activities](RecordStore &records) {
            activities->requireNone(id);
            return records.remove(id);
        });
    });
}

CORBA::ULong ControlServant::getNrOfIndexEntries(Text recordId)
{
    return static_cast<CORBA::ULong>(recordOf("getNrOfIndexEntries", recordId).index.size());
}

TQ_KORVE::seqINDEX_ENTRY *ControlServant::getSeqOfIndexEntries(Text recordId, CORBA::ULong first, CORBA::ULong count)
{
    const QVector<IndexEntry> index = recordOf("getSeqOfIndexEntries", recordId).index;
    const auto size = static_cast<CORBA::ULong>(index.size());
    const CORBA::ULong begin = std::min(first, size);
    const CORBA::ULong length = std::min(count, size - begin);
    return toSequence<TQ_KORVE::seqINDEX_ENTRY>(index.mid(static_cast<int>(begin), static_cast<int>(length)),
                                                toIndexEntry);
}

void ControlServant::addBookmark(Text recordId, CORBA::ULongLong timestampUs, const TQ_KORVE::wideText &text)
{
    const Note bookmark{timestampUs, checkedText("addBookmark", text)};
    change("addBookmark", recordId, [bookmark](Record &record) {
        addNote(record.bookmarks, bookmark, maximumNotes);
    });
}

void ControlServant::removeBookmark(Text recordId, CORBA::ULongLong timestampUs)
{
    change("removeBookmark", recordId, [timestampUs](Record &record) { removeNote(record.bookmarks, timestampUs); });
}

void ControlServant::addBookmarks(Text recordId, const TQ_KORVE::seqBookmarks &bookmarks)
{
    NoteChanges changes;
    for (CORBA::ULong i = 0; i < bookmarks.length(); ++i) {
        if (bookmarks[i].bookmark.length() > longestText)
            changes.refusal = RecorderError{TQ_KORVE::ekINVALID_VALUE, QStringLiteral("a text is too long")};
        else
            changes.added.append({bookmarks[i].timestamp, fromWideText(bookmarks[i].bookmark)});
    }
    changeBookmarks("addBookmarks", recordId, changes);
}

void ControlServant::removeBookmarks(Text recordId, const TQ_KORVE::seqBookmarks &bookmarks)
{
    NoteChanges changes;
    for (CORBA::ULong i = 0; i < bookmarks.length(); ++i)
        changes.removed.append(bookmarks[i].timestamp);
    changeBookmarks("removeBookmarks", recordId, changes);
}

/// Writes the record once.
void ControlServant::changeBookmarks(const char *operation, Text recordId, NoteChanges changes)
{
    const auto refusal = std::make_shared<std::optional<RecorderError>>(); // the work may outlive the wait
    change(operation, recordId, [refusal, changes = std::move(changes)](Record &record) {
        *refusal = changes.applyTo(record.bookmarks, maximumNotes);
    });
    if (!*refusal)
        return;
    const TQ_KORVE::exKorve first = deviceFailure(operation, **refusal);
    throw KORVE_INSTALLATION::exPartlyDone(first.kind, first.text);
}

TQ_KORVE::seqBookmarks *ControlServant::getBookmarks(Text recordId)
{
    return toSequence<TQ_KORVE::seqBookmarks>(recordOf("getBookmarks", recordId).bookmarks, toBookmark);
}

void ControlServant::addHistory(Text recordId, const TQ_KORVE::wideText &text)
{
    const Note entry{operations->clock().nowUs(), checkedText("addHistory", text)};
    change("addHistory", recordId, [entry](Record &record) {
        addNoteAfter(record.history, entry, maximumNotes);
    });
}

void ControlServant::removeHistoryEntry(Text recordId, CORBA::ULongLong timestampUs)
{
    change("removeHistoryEntry", recordId, [timestampUs](Record &record) { removeNote(record.history, timestampUs); });
}

TQ_KORVE::seqHistory *ControlServant::getHistory(Text recordId)
{
    return toSequence<TQ_KORVE::seqHistory>(recordOf("getHistory", recordId).history, toHistoryEntry);
}

TQ_KORVE::struMASS_STORE_STATUS *ControlServant::getMassStoreStatus()
{
    const auto [room, path] = ask("getMassStoreStatus", [](RecordStore &records) {
        return std::pair(records.room(), records.folderPath());
    });
    auto status = std::make_unique<TQ_KORVE::struMASS_STORE_STATUS>();
    status->totalSize = room.totalBytes;
    status->freeSize = isDiskFull() ? 0 : room.freeBytes;
    status->units.length(1);
    status->units[0].unitName = path.toUtf8().constData();
    status->units[0].totalSize = room.totalBytes;
    status->units[0].freeSize = status->freeSize;
    return status.release();
}

char *ControlServant::copyRecord(Text recordId, const TQ_KORVE::seqFILE_PART &parts, const TQ_KORVE::wideText &name)
{
    return copyRecordEx(recordId, parts, name, Receiver());
}

char *ControlServant::copyRecordEx(Text recordId, const TQ_KORVE::seqFILE_PART &parts, const TQ_KORVE::wideText &name,
                                   Receiver receiver)
{
    const QString copyName = checkedText("copyRecord", name);
    return answerChange("copyRecord", [&] {
        const QString id = operations->copy(idOf(recordId), fromFileParts(parts), copyName, receiver);
        return CORBA::string_dup(id.toUtf8());
    });
}

TQ_KORVE::seqMETA_DATA *ControlServant::listAllRecordsOnArchDev(Text archiveDevice)
{
    return answerDevice("listAllRecordsOnArchDev", [&] {
        if (idOf(archiveDevice) != QLatin1String("refused:"))
            return toSequence<TQ_KORVE::seqMETA_DATA>(operations->transfers().list(idOf(archiveDevice)), toFileEntry);
        const auto refused = store->ask([](RecordStore &records) { return records.refused(); });
        return toSequence<TQ_KORVE::seqMETA_DATA>(refused, toRefusedEntry);
    });
}

void ControlServant::copyRecordToArchDev(Text recordId, Text url)
{
    answerDevice("copyRecordToArchDev", [&] { operations->transfer(idOf(recordId), idOf(url)); });
}

void ControlServant::copyRecordToArchDevEx(Text recordId, Text url, Receiver receiver)
{
    answerDevice("copyRecordToArchDevEx", [&] { operations->startTransfer(idOf(recordId), idOf(url), receiver); });
}

TQ_KORVE::seqOctet *ControlServant::getOverviewSpectrum(Text recordId, CORBA::ULongLong startPosition,
                                                        CORBA::ULongLong stopPosition, CORBA::ULongLong lineCount,
                                                        CORBA::ULong fftSize, Window window)
{
    return answerDevice("getOverviewSpectrum", [&] {
        const SpectrumRequest request{startPosition, stopPosition, lineCount, fftSize, window};
        return toOctets(operations->spectra().overview(idOf(recordId), request));
    });
}

void ControlServant::getOverviewSpectrumStreamed(Text recordId, CORBA::ULongLong startPosition,
                                                 CORBA::ULongLong stopPosition, CORBA::ULongLong lineCount,
                                                 CORBA::ULong fftSize, Window window, CORBA::ULong address,
                                                 CORBA::UShort port)
{
    answerDevice("getOverviewSpectrumStreamed", [&] {
        const SpectrumRequest request{startPosition, stopPosition, lineCount, fftSize, window};
        operations->spectra().stream(idOf(recordId), request, address, port);
    });
}

CORBA::ULongLong ControlServant::setSystemTime(CORBA::ULongLong timeUs)
{
    return answerDevice("setSystemTime", [&] { return operations->clock().set(timeUs); });
}

CORBA::ULongLong ControlServant::getSystemTime()
{
    return operations->clock().nowUs();
}

CORBA::Boolean ControlServant::isSynchronizedByNTP()
{
    return operations->clock().isSynchronized();
}

char *ControlServant::getFirmwareVersion()
{
    return CORBA::string_dup(firmwareVersion.c_str());
}

} // namespace installation::recorder
