#include "tests/commands/commandsunderfire.h"

#include "objectmodel/bookmarkentry.h"
#include "objectmodel/korve_recorddata.h"
#include "tests/appruntime/capturedtraces.h"

#include <QDateTime>

#include <algorithm>
#include <stdexcept>

using KORVE_XML::KORVE_RecordData;

namespace
{

constexpr quint64 farUs = 1'000'000'000'000'000; // of bookmarks: beyond all that others set

std::string nameOf(int round)
{
    return "round " + std::to_string(round);
}

quint64 timeOf(int round)
{
    return farUs + static_cast<quint64>(round);
}

QVector<KORVE_XML::BookmarkEntry> bookmarkOf(int round)
{
    KORVE_XML::BookmarkEntry entry;
    entry.SetTimestamp(timeOf(round));
    entry.SetBookmark(QString::fromStdString(nameOf(round)));
    return {entry};
}

void nothing(World &, int) {}

bool byAdmin(const World &world)
{
    return world.admin->OutcomeIsUnknown();
}

int historyOf(World &world, int round)
{
    return world.historyEntries(nameOf(round));
}

int bookmarksOf(World &world, int round)
{
    return world.bookmarks(timeOf(round));
}

void addBookmark(World &world, int round)
{
    world.recorder->addBookmark(world.recordUtf8, timeOf(round), deviceText(nameOf(round)));
}

void addHistory(World &world, int round)
{
    world.recorder->addHistory(world.recordUtf8, deviceText(nameOf(round)));
}

/// The time of the entry of that round; 0 when there is none.
quint64 historyTime(World &world, int round)
{
    const TQ_KORVE::wideText wanted = deviceText(nameOf(round));
    TQ_KORVE::seqHistory_var history = world.recorder->getHistory(world.recordUtf8);
    for (CORBA::ULong i = 0; i < history->length(); ++i) {
        const TQ_KORVE::wideText &text = history[i].historyEntry;
        if (text.length() == wanted.length() &&
            std::equal(text.get_buffer(), text.get_buffer() + text.length(), wanted.get_buffer()))
            return history[i].timestamp;
    }
    return 0;
}

int isGone(int count)
{
    return count == 0 ? 1 : 0;
}

std::string copyName(int round)
{
    return "copy of " + nameOf(round);
}

constexpr quint64 hourUs = 3'600'000'000;

/// Hours to come, another one each round.
quint64 timeToSet(int round)
{
    static const quint64 begin = QDateTime::currentMSecsSinceEpoch() * 1000;
    return begin + static_cast<quint64>(round) * hourUs;
}

int isTimeSet(World &world, int round)
{
    const quint64 time = world.deviceTime();
    return time >= timeToSet(round) && time < timeToSet(round) + hourUs ? 1 : 0;
}

bool byReplay(const World &world)
{
    return world.replay->OutcomeIsUnknown();
}

template <TQ_KORVE::eRECORD_STATUS status> int isNow(World &world, int)
{
    return world.status() == status ? 1 : 0;
}

void beReplayed(World &world, int)
{
    world.openChannel();
    world.replayAnew();
}

/// Also for the manager, which may not have found out yet what has become of the replay before.
void beIdle(World &world, int round)
{
    beReplayed(world, round);
    if (world.replay->StopReplay(world.device, world.record) != 0)
        throw std::runtime_error("the record is still replayed");
}

void bePaused(World &world, int round)
{
    beReplayed(world, round);
    world.replay->PauseReplay(world.device, world.record);
}

std::vector<CommandUnderFire> replayCommands()
{
    return {
        {"StartReplay", beIdle, [](World &w, int) { return w.startReplay(); }, isNow<TQ_KORVE::rsREPLAYING>, byReplay},
        {"StartReplayReceivers", beIdle,
         [](World &w, int) { return w.startReplay(KORVE_XML::NetIfParams::TCP_IF); }, isNow<TQ_KORVE::rsREPLAYING>,
         byReplay},
        {"PauseReplay", beReplayed, [](World &w, int) { return w.replay->PauseReplay(w.device, w.record); },
         isNow<TQ_KORVE::rsREADY_FOR_REPLAY>, byReplay},
        {"ContinueReplay", bePaused, [](World &w, int) { return w.replay->ContinueReplay(w.device, w.record); },
         isNow<TQ_KORVE::rsREPLAYING>, byReplay},
        {"StopReplay", beReplayed, [](World &w, int) { return w.replay->StopReplay(w.device, w.record); },
         isNow<TQ_KORVE::rsIDLE>, byReplay},
    };
}

/// Something to delete.
void copyAtRecorder(World &world, int round)
{
    TQ_KORVE::seqFILE_PART part;
    part.length(1);
    part[0] = {0, 1000};
    const CORBA::String_var id = world.recorder->copyRecord(world.recordUtf8, part, deviceText(nameOf(round)));
    world.copies[round] = id.in();
}

unsigned long deleteCopy(World &world, int round)
{
    return world.exports->deleteRecord(world.device, QString::fromUtf8(world.copies[round])) ? 0 : 1;
}

unsigned long showSpectrum(World &world, int)
{
    constexpr unsigned long fftSize = 256;
    return world.admin->overviewSpectrumStreamed(world.device, world.record, 0, World::recordBytes, 10, fftSize,
                                                 KorveDataTypes::eFFT_Window::Hanning, QStringLiteral("127.0.0.1"),
                                                 world.display.port());
}

void countWhatIsShown(World &world, int round)
{
    world.shownBefore[round] = world.display.count();
}

int isShown(World &world, int round)
{
    const auto next = world.shownBefore.upper_bound(round);
    return (next == world.shownBefore.end() ? world.display.count() : next->second) - world.shownBefore.at(round);
}

std::vector<CommandUnderFire> changingCommands()
{
    return {
        {"SetRecordComment", nothing,
         [](World &w, int round) {
             return w.admin->SetRecordComment(w.device, w.record, QString::fromStdString(nameOf(round)));
         },
         [](World &w, int round) { return w.recordName() == nameOf(round) ? 1 : 0; }, byAdmin},
        {"SetRecordDeletableFlag", [](World &w, int) { w.recorder->clearDeletableFlagOfRecord(w.recordUtf8); },
         [](World &w, int) { return w.admin->SetRecordDeletableFlag(w.device, w.record, true); },
         [](World &w, int) { return w.isDeletable() ? 1 : 0; }, byAdmin},
        {"addHistory", nothing,
         [](World &w, int round) {
             return w.admin->addHistory(w.device, w.record, QString::fromStdString(nameOf(round)));
         },
         historyOf, byAdmin},
        {"DeleteHistoryEntryFromKorve", addHistory,
         [](World &w, int round) {
             return w.admin->DeleteHistoryEntryFromKorve(w.device, w.record, historyTime(w, round));
         },
         [](World &w, int round) { return isGone(historyOf(w, round)); }, byAdmin},
        {"SaveBookmarksToKorve", nothing,
         [](World &w, int round) { return w.admin->SaveBookmarksToKorve(w.device, w.record, bookmarkOf(round)); },
         bookmarksOf, byAdmin},
        {"DeleteBookmarksFromKorve", addBookmark,
         [](World &w, int round) { return w.admin->DeleteBookmarksFromKorve(w.device, w.record, bookmarkOf(round)); },
         [](World &w, int round) { return isGone(bookmarksOf(w, round)); }, byAdmin},
        {"copyRecord", nothing,
         [](World &w, int round) {
             return w.admin->copyRecord(w.device, w.record, 0, 1000, QString::fromStdString(copyName(round)));
         },
         [](World &w, int round) { return w.records(copyName(round)); }, byAdmin},
        {"deleteRecord", copyAtRecorder, deleteCopy,
         [](World &w, int round) { return w.has(w.copies[round]) ? 0 : 1; },
         [](const World &) { return true; }, 1},
        {"overviewSpectrumStreamed", countWhatIsShown, showSpectrum, isShown, byAdmin},
        {"exportRecord", [](World &w, int round) { w.exporter->begin(w.exportId(round), false); },
         [](World &w, int) { return w.startExport() ? 0ul : 1ul; },
         [](World &w, int round) { return w.exporter->ordersOf(w.exportId(round)); },
         [](const World &) { return true; }, 1},
        {"SetDeviceTime", nothing,
         [](World &w, int round) { return w.admin->SetDeviceTime(w.device, timeToSet(round)); }, isTimeSet, byAdmin},
    };
}

void noAnswerYet(World &world, int)
{
    world.rightAnswers = 0;
}

int rightAnswers(World &world, int)
{
    return world.rightAnswers;
}

/// Counts an answer that is as it should be. The number of a command that has none of its own is 0 or 1.
template <typename Number> unsigned long answered(World &world, Number number, bool isRight)
{
    world.rightAnswers += number == 0 && isRight ? 1 : 0;
    return number;
}

unsigned long askForRecord(World &w, int)
{
    KORVE_RecordData record;
    const unsigned long number = w.admin->getRecord(w.device, w.record, record);
    return answered(w, number, record.GetRecordID() == w.record && record.GetSize() == World::recordBytes);
}

unsigned long askForDetail(World &w, int)
{
    return answered(w, w.admin->requestRecordDataDetail(w.device, w.record), true);
}

unsigned long askForRecords(World &w, int)
{
    QVector<KORVE_RecordData> records;
    const unsigned long number = w.manager->getAllRecords(w.device, records);
    return answered(w, number, records.size() == w.records());
}

unsigned long askForTime(World &w, int)
{
    unsigned long long time = 0;
    bool isSynchronized = false;
    const quint64 before = w.deviceTime();
    const unsigned long number = w.admin->GetDeviceTime(w.device, time, isSynchronized);
    return answered(w, number, before <= time && time <= w.deviceTime());
}

unsigned long askForFormat(World &w, int)
{
    QString error;
    const QString format = w.exports->recordDataFormat(w.device, w.record, error);
    return answered(w, error.isEmpty() ? 0 : 1, format == QLatin1String("DIGITAL_AUDIO"));
}

unsigned long askForDevice(World &w, int)
{
    const QString device = w.exports->deviceID(QString::fromLatin1(qgetenv("KORVE_ADDRESS")));
    return answered(w, device.isEmpty() ? 1 : 0, device == w.device);
}

unsigned long askForArchive(World &w, int)
{
    QString host;
    unsigned short port = 0;
    const bool isThere = w.admin->pelinConnectionParameter(host, port);
    return answered(w, isThere ? 0 : 1, host == QLatin1String("archive.example") && port == 8010);
}

/// An export that goes on until it is cancelled, or its manager dies.
void beExported(World &w, int round)
{
    noAnswerYet(w, round);
    w.exporter->begin(w.exportId(round), true);
    if (!w.startExport() || !w.exporter->isWaitedFor())
        throw std::runtime_error("there is no export to be cancelled");
}

unsigned long cancelExport(World &w, int round)
{
    const bool isCancelled = w.exports->cancelExport(QString::fromStdString(w.exportId(round)));
    w.exporter->release();
    return answered(w, isCancelled ? 0 : 1, true);
}

/// No manager here restores anything: the right answer is the refusal, which only a trace tells from silence.
unsigned long askToRestore(World &w, int round)
{
    static CapturedTraces traces(32);
    traces.take();
    const QString group = QString::fromStdString(nameOf(round));
    w.admin->restorePelinFilegroup(w.device, w.record, group);
    const bool isRefused = traces.contain("file group " + group.toStdString() + " cannot be restored");
    return answered(w, isRefused ? 0 : 1, true);
}

CommandUnderFire question(const char *name, unsigned long whenSilent, unsigned long (*ask)(World &, int))
{
    return {name, noAnswerYet, ask, rightAnswers, [](const World &) { return true; }, whenSilent, true};
}

} // namespace

const std::vector<CommandUnderFire> &commandsUnderFire()
{
    static const std::vector<CommandUnderFire> all = [] {
        std::vector<CommandUnderFire> commands = changingCommands();
        std::ranges::move(replayCommands(), std::back_inserter(commands));
        commands.push_back(question("getRecord", 210, askForRecord));
        commands.push_back(question("RequestRecordDataDetail", 210, askForDetail));
        commands.push_back(question("deviceID", 1, askForDevice));
        commands.push_back(question("getAllRecords", 201, askForRecords));
        commands.push_back(question("GetDeviceTime", 210, askForTime));
        commands.push_back(question("recordDataFormat", 1, askForFormat));
        commands.push_back(question("pelinConnectionParameter", 1, askForArchive));
        commands.push_back(question("restorePelinFilegroup", 1, askToRestore));
        commands.push_back(question("cancelExport", 1, cancelExport));
        commands.back().prepare = beExported;
        return commands;
    }();
    return all;
}
