#include "benchmarks/remote/onecpu.h"
#include "benchmarks/remote/station.h"
#include "benchmarks/support/recordpool.h"
#include "benchmarks/support/require.h"

#include "connectionmanagement/guitoserveradmincorbahandler.h"
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
    QVector<KORVE_XML::BookmarkEntry> bookmarks;
    GuiToServerAdminCorbaHandler admin{Station::instance().handler};
    GuiToServerReplayCorbaHandler replay{Station::instance().handler};
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
