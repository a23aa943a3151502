#include "benchmarks/remote/onecpu.h"
#include "benchmarks/remote/station.h"
#include "benchmarks/support/recordpool.h"
#include "benchmarks/support/require.h"

#include "connectionmanagement/guitoserveradmincorbahandler.h"
#include "connectionmanagement/guitoserverexportcorbahandler.h"
#include "connectionmanagement/guitoserverreplaycorbahandler.h"
#include "korvebase/corbatoclientconverter.h"
#include "objectmodel/bookmarkentry.h"
#include "objectmodel/korve_recorddata.h"

#include <benchmark/benchmark.h>

using KORVE_XML::KORVE_RecordData;
using KorveGUI::GuiToServerAdminCorbaHandler;
using KorveGUI::GuiToServerReplayCorbaHandler;

namespace ToClient = KorveCommon::CorbaToClientConverter;

namespace
{

constexpr int bookmarkCount = 100;

/// The handlers, and the interfaces that they call.
struct Commands {
    Commands()
    {
        require(replay.Initialize(device), "the manager has a replay interface");
        for (int n = 0; n < bookmarkCount; ++n) {
            bookmarks.append(KORVE_XML::BookmarkEntry());
            bookmarks.last().SetTimestamp(static_cast<unsigned long long>(n));
            bookmarks.last().SetBookmark(text);
        }
    }

    const QString device = QStringLiteral("many");
    const QString record = QStringLiteral("R1");
    const QString text = QStringLiteral("a comment");
    const QString address = QStringLiteral("127.0.0.1");
    QVector<KORVE_XML::BookmarkEntry> bookmarks;
    GuiToServerAdminCorbaHandler admin{Station::instance().handler};
    GuiToServerReplayCorbaHandler replay{Station::instance().handler};
    KorveGUI::GuiToServerExportCorbaHandler exports{Station::instance().handler};
    const TQ_KRV::IF_KORVE_Admin_var bareAdmin = Station::instance().handler->GetKorveAdminInterface();
    const TQ_KRV::IF_KORVE_Replay_var bareReplay = Station::instance().handler->GetReplayInterface(device);
};

Commands &commands()
{
    static Commands &commands = *new Commands; // never destroyed: the ORB may end first
    return commands;
}

unsigned long timeByHandler(Commands &c)
{
    unsigned long long time = 0;
    bool isSynchronized = false;
    return c.admin.GetDeviceTime(c.device, time, isSynchronized);
}

unsigned long bareTime(Commands &c)
{
    CORBA::ULongLong time = 0;
    CORBA::Boolean isSynchronized = false;
    return c.bareAdmin->getDeviceTime("many", time, isSynchronized);
}

unsigned long recordByHandler(Commands &c)
{
    KORVE_RecordData record;
    return c.admin.getRecord(c.device, c.record, record);
}

/// The call and the conversion.
unsigned long bareRecord(Commands &c)
{
    TQ_KRV::struRECORD_DATA_var data;
    const CORBA::ULong number = c.bareAdmin->getRecord("many", "R1", data.out());
    KORVE_RecordData record;
    ToClient::fillRecordData(record, data.in());
    return number;
}

/// The conversions and the call.
unsigned long bareBookmarks(Commands &c)
{
    TQ_KRV::seqBookmarks sequence;
    sequence.length(bookmarkCount);
    for (int n = 0; n < bookmarkCount; ++n)
        ToClient::fillCorbaBookmarkEntry(sequence[static_cast<CORBA::ULong>(n)], std::as_const(c.bookmarks).at(n));
    c.bareAdmin->addBookmarks("many", "R1", sequence);
    return 0;
}

unsigned long copyByHandler(Commands &c)
{
    return c.admin.copyRecord(c.device, c.record, 0, 1000, c.text);
}

unsigned long bareCopy(Commands &c)
{
    TQ_KRV::seqCopySection sections(1);
    sections.length(1);
    sections[0] = {0, 1000};
    CORBA::String_var copy;
    return c.bareAdmin->copyRecord("many", "R1", sections, L"a comment", copy.out());
}

unsigned long spectrumByHandler(Commands &c)
{
    return c.admin.overviewSpectrumStreamed(c.device, c.record, 0, 1000, 1, 16, KorveDataTypes::eFFT_Window::Hanning,
                                            c.address, 9);
}

unsigned long bareSpectrum(Commands &c)
{
    return c.bareAdmin->getOverviewSpectrumStreamed("many", "R1", 0, 1000, 1, 16, TQ_KRV::wmHanning, "127.0.0.1", 9);
}

struct Command {
    const char *name;
    unsigned long (*ours)(Commands &);
    unsigned long (*floor)(Commands &);
};

const Command all[] = {
    {"corba.small.comment", [](Commands &c) { return c.admin.SetRecordComment(c.device, c.record, c.text); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->setRecordComment("many", "R1", L"a comment"); }},
    {"corba.small.deletable", [](Commands &c) { return c.admin.SetRecordDeletableFlag(c.device, c.record, true); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->setRecordDeletableFlag("many", "R1", true); }},
    {"corba.small.pause", [](Commands &c) { return c.replay.PauseReplay(c.device, c.record); },
     [](Commands &c) -> unsigned long { return c.bareReplay->PauseReplay("many", "R1"); }},
    {"corba.small.time", timeByHandler, bareTime},
    {"corba.small.history", [](Commands &c) { return c.admin.addHistory(c.device, c.record, c.text); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->addHistory("many", "R1", L"a comment"); }},
    {"corba.small.nohistory", [](Commands &c) { return c.admin.removeHistoryEntry(c.device, c.record, 1); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->removeHistoryEntry("many", "R1", 1); }},
    {"corba.small.settime", [](Commands &c) { return c.admin.SetDeviceTime(c.device, 1); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->setDeviceTime("many", 1); }},
    {"corba.small.details", [](Commands &c) { return c.admin.requestRecordDataDetail(c.device, c.record); },
     [](Commands &c) -> unsigned long { return c.bareAdmin->requestRecordDataDetail("many", "R1"); }},
    {"corba.small.start",
     [](Commands &c) { return c.replay.StartReplay(c.device, c.record, KORVE_RecordData::HF_20k, 0, 1000, 1); },
     [](Commands &c) -> unsigned long { return c.bareReplay->StartReplay("many", "R1", TQ_KRV::drHF_20k, 0, 1000, 1); }},
    {"corba.small.continue", [](Commands &c) { return c.replay.ContinueReplay(c.device, c.record); },
     [](Commands &c) -> unsigned long { return c.bareReplay->ContinueReplay("many", "R1"); }},
    {"corba.small.stop", [](Commands &c) { return c.replay.StopReplay(c.device, c.record); },
     [](Commands &c) -> unsigned long { return c.bareReplay->StopReplay("many", "R1"); }},
    {"corba.small.copy", copyByHandler, bareCopy},
    {"corba.small.spectrum", spectrumByHandler, bareSpectrum},
    {"corba.small.delete", [](Commands &c) -> unsigned long { return c.exports.deleteRecord(c.device, c.record) ? 0 : 1; },
     [](Commands &c) -> unsigned long { return c.bareAdmin->deleteRecord("many", "R1") ? 0 : 1; }},
    {"corba.getrecord", recordByHandler, bareRecord},
    {"corba.addbookmarks", [](Commands &c) { return c.admin.addBookmarkEntries(c.device, c.record, c.bookmarks); },
     bareBookmarks},
};

void measure(benchmark::State &state, unsigned long (*command)(Commands &))
{
    Commands &c = commands();
    const OneCpu pinned(Service::instance().processes());
    require(command(c) == 0, "the command succeeds");
    for (auto _ : state)
        command(c);
}

const bool registered = [] {
    for (const Command &command : all) {
        const std::string name = command.name;
        benchmark::RegisterBenchmark((name + "/ours").c_str(), measure, command.ours)->UseRealTime();
        benchmark::RegisterBenchmark((name + "/floor").c_str(), measure, command.floor)->UseRealTime();
    }
    return true;
}();

} // namespace
