#include "connectionmanagement/guitoserveradmincorbahandler.h"

#include "objectmodel/bookmarkentry.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/fakecommands.h"
#include "tests/connectionmanagement/handlerfixture.h"
#include "tests/connectionmanagement/keyedservant.h"

using namespace KorveGUI;
using TQ_KRV::IF_KORVE_Admin;
using TQ_KRV::IF_KRV_c_KRV;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Number = unsigned long;

namespace
{
const QString d1 = QStringLiteral("D1");
const QString r1 = QStringLiteral("R1");
constexpr char sourceName[] = "connectionmanagement/guitoserveradmincorbahandler";

/// Connected to a manager whose administration answers.
class AdminHandler : public HandlerFixture
{
protected:
    AdminHandler()
    {
        upAll();
        handler->ReconnectToServer();
    }

    const std::shared_ptr<Handler> handler = std::make_shared<Handler>(alpha, station, QString());
    KeyedServant<FakeAdmin> admin{"admin"};
    GuiToServerAdminCorbaHandler commands{handler};
};

GuiToServerAdminCorbaHandler::Bookmarks bookmarks(std::initializer_list<std::pair<quint64, QString>> entries)
{
    GuiToServerAdminCorbaHandler::Bookmarks list;
    for (const auto &[time, text] : entries) {
        KORVE_XML::BookmarkEntry entry;
        entry.SetTimestamp(time);
        entry.SetBookmark(text);
        list.append(entry);
    }
    return list;
}

/// A command by its trace name, how it is given, and what then arrives.
struct AdminCommand {
    const char *name;
    std::function<Number(GuiToServerAdminCorbaHandler &)> give;
    const char *arrives;
    bool hasRecord = true;
};

void PrintTo(const AdminCommand &command, std::ostream *out)
{
    *out << command.name;
}

using Commands = GuiToServerAdminCorbaHandler;

TQ_KRV::seqFILE_PART_var twoParts()
{
    TQ_KRV::seqFILE_PART_var parts = new TQ_KRV::seqFILE_PART(2);
    parts->length(2);
    parts[CORBA::ULong(0)] = {0, 100};
    parts[CORBA::ULong(1)] = {200, 300};
    return parts;
}

Number copyTwoParts(Commands &c)
{
    QString copied;
    const Number number = c.CopyRecord(d1, r1, copied, twoParts(), "twice");
    EXPECT_EQ(copied, number == 0 ? "R-new" : "");
    return number;
}

Number readRecord(Commands &c)
{
    KORVE_XML::KORVE_RecordData record;
    return c.getRecord(d1, r1, record);
}

Number readTime(Commands &c)
{
    unsigned long long time = 7;
    bool isSynchronized = false;
    const Number number = c.GetDeviceTime(d1, time, isSynchronized);
    EXPECT_EQ(isSynchronized, number == 0);
    EXPECT_EQ(time, number == 0 ? 18446744073709551615ull : 7ull);
    return number;
}

constexpr auto kaiser = KorveDataTypes::eFFT_Window::Kaiser;

const AdminCommand commandRows[] = {
    {"SaveBookmarksToKorve", [](Commands &c) { return c.SaveBookmarksToKorve(d1, r1, bookmarks({{5, "a"}})); },
     "addBookmarks D1 R1 [5 a]"},
    {"DeleteBookmarksFromKorve", [](Commands &c) { return c.DeleteBookmarksFromKorve(d1, r1, bookmarks({})); },
     "deleteBookmarks D1 R1 "},
    {"addBookmarkEntries",
     [](Commands &c) { return c.addBookmarkEntries(d1, r1, bookmarks({{1, "b"}, {2, QString::fromUtf8("😀")}})); },
     "addBookmarks D1 R1 [1 b][2 <d83d><de00>]"},
    {"RequestRecordDataDetail", [](Commands &c) { return c.requestRecordDataDetail(d1, r1); },
     "requestRecordDataDetail D1 R1"},
    {"SaveHistoryEntryToKorve", [](Commands &c) { return c.SaveHistoryEntryToKorve(d1, r1, "seen"); },
     "addHistory D1 R1 seen"},
    {"DeleteHistoryEntryFromKorve",
     [](Commands &c) { return c.DeleteHistoryEntryFromKorve(d1, r1, 18446744073709551615ull); },
     "removeHistoryEntry D1 R1 18446744073709551615"},
    {"addHistory", [](Commands &c) { return c.addHistory(d1, r1, QString()); }, "addHistory D1 R1 "},
    {"removeHistoryEntry", [](Commands &c) { return c.removeHistoryEntry(d1, r1, -1); },
     "removeHistoryEntry D1 R1 18446744073709551615"},
    {"CopyRecord", copyTwoParts, "copyRecord D1 R1 [0 100][200 300] twice"},
    {"copyRecord", [](Commands &c) { return c.copyRecord(d1, r1, 10, 20, "once"); }, "copyRecord D1 R1 [10 20] once"},
    {"SetRecordComment", [](Commands &c) { return c.SetRecordComment(d1, r1, QString::fromUtf8("ä")); },
     "setRecordComment D1 R1 <e4>"},
    {"SetRecordDeletableFlag", [](Commands &c) { return c.SetRecordDeletableFlag(d1, r1, true); },
     "setRecordDeletableFlag D1 R1 1"},
    {"getRecord", readRecord, "getRecord D1 R1"},
    {"overviewSpectrumStreamed",
     [](Commands &c) {
         return c.overviewSpectrumStreamed(d1, r1, 1, 2, 3, 0x100000004ul, kaiser, "127.0.0.1", 65536 + 5);
     },
     "getOverviewSpectrumStreamed D1 R1 1 2 3 4 3 127.0.0.1 5"},
    {"GetDeviceTime", readTime, "getDeviceTime D1", false},
    {"SetDeviceTime", [](Commands &c) { return c.SetDeviceTime(d1, 1ull << 63); }, "setDeviceTime D1 9223372036854775808",
     false},
};

class AdminHandlersCommand : public AdminHandler, public testing::WithParamInterface<AdminCommand>
{
protected:
    AdminHandlersCommand() { admin->deviceTime = 18446744073709551615ull; }
    Number give() { return GetParam().give(commands); }
    std::string failure(const char *exception) const
    {
        const std::string where = GetParam().hasRecord ? "Device/Record D1/R1" : "Device D1";
        return std::string(GetParam().name) + " for " + where + " failed with exception: " + exception;
    }
};

TEST(AdminCommands, TakeTheAddressOfAStreamByValue)
{
    using Published = Number (Commands::*)(const QString &, const QString &, long long, long long, unsigned int,
                                           unsigned long, KorveDataTypes::eFFT_Window, QString, unsigned int);
    EXPECT_TRUE((std::is_same_v<decltype(&Commands::overviewSpectrumStreamed), Published>));
}

TEST_P(AdminHandlersCommand, ArrivesWithItsArguments)
{
    EXPECT_EQ(give(), 0u);
    EXPECT_THAT(admin->calls, ElementsAre(GetParam().arrives));
    EXPECT_FALSE(commands.OutcomeIsUnknown());
}

TEST_P(AdminHandlersCommand, AnswersTheManagersNumber)
{
    const bool hasNone = std::string(GetParam().arrives).find("Bookmarks") != std::string::npos;
    admin->number = 10012;
    EXPECT_EQ(give(), hasNone ? 0u : 10012u);
    EXPECT_FALSE(commands.OutcomeIsUnknown());
}

TEST_P(AdminHandlersCommand, KnowsWhetherTheManagerCanHaveActed)
{
    CapturedTraces traces(32);
    admin->trouble = [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); };
    EXPECT_EQ(give(), 210u);
    EXPECT_FALSE(commands.OutcomeIsUnknown());
    admin->trouble = [] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); };
    EXPECT_EQ(give(), 211u);
    EXPECT_TRUE(commands.OutcomeIsUnknown());
    EXPECT_THAT(take(traces), ElementsAre(failure("TRANSIENT"), failure("COMM_FAILURE")));
    EXPECT_EQ(traces.sourceOf(failure("TRANSIENT")), "common/errorlogging");
    admin->trouble = [] {};
    EXPECT_EQ(give(), 0u);
    EXPECT_FALSE(commands.OutcomeIsUnknown()); // it speaks of the last command alone
}

TEST_P(AdminHandlersCommand, NeedsAConnection)
{
    handler->Shutdown();
    EXPECT_EQ(give(), 101u);
    EXPECT_THAT(admin->calls, IsEmpty());
}

TEST_P(AdminHandlersCommand, NeedsAnInterfaceFromTheManager)
{
    ASSERT_TRUE(commands.Initialize());
    handler->Shutdown();
    CapturedTraces traces(32);
    EXPECT_EQ(give(), 5u);
    EXPECT_THAT(take(traces), ElementsAre("error calling getKorveAdminInterface"));
    EXPECT_EQ(traces.sourceOf("error calling getKorveAdminInterface"), sourceName);
}

INSTANTIATE_TEST_SUITE_P(Commands, AdminHandlersCommand, testing::ValuesIn(commandRows),
                         [](const auto &info) { return "Of" + std::string(info.param.name); });

TEST_F(AdminHandler, RepairsItselfWithTheNextCommand)
{
    handler->Shutdown();
    EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 101u);
    handler->ReconnectToServer();
    EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 0u);
}

TEST_F(AdminHandler, FetchesItsInterfaceAnewWhenTheConnectionOfItsSubsystemChanges)
{
    ASSERT_TRUE(commands.Initialize());
    handler->Shutdown();
    Q_EMIT station->ConnectionChanged(west);
    EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 5u); // what it had is still there
    Q_EMIT station->ConnectionChanged(alpha);
    EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 101u);
}

TEST_F(AdminHandler, FillsTheRecordOnlyWhenThereIsOne)
{
    admin->record.recordID = "R1";
    admin->record.recordName = L"Name";
    KORVE_XML::KORVE_RecordData record;
    admin->number = 500;
    EXPECT_EQ(commands.getRecord(d1, r1, record), 500u);
    EXPECT_FALSE(record.IsRecordIDSet());
    admin->number = 0;
    EXPECT_EQ(commands.getRecord(d1, r1, record), 0u);
    EXPECT_EQ(record.GetRecordName(), QStringLiteral("Name"));
}

TEST_F(AdminHandler, AnswersAnUnknownRecordWithTheTextOfTheOtherDecoder)
{
    admin->trouble = [] { throw IF_KORVE_Admin::exAdmin(IF_KORVE_Admin::Invalid_RecordId, "R1"); };
    CapturedTraces traces(32);
    KORVE_XML::KORVE_RecordData record;
    EXPECT_EQ(commands.getRecord(d1, r1, record), 501u);
    EXPECT_FALSE(commands.OutcomeIsUnknown());
    EXPECT_THAT(take(traces), ElementsAre("getRecord for Device/Record D1/R1 failed with exception: "
                                            "User exception: undefined"));
}

class ManagersOperation : public AdminHandler
{
protected:
    bool restore() { return commands.restorePelinFilegroup(d1, r1, "G1"); }
    bool askForArchive() { return commands.pelinConnectionParameter(host, port); }
    /// What is traced for a failure of @p operation; the second line names its kind.
    std::vector<std::string> tracesOf(const std::function<bool()> &operation, const std::function<void()> &trouble)
    {
        commands.Initialize();
        manager.trouble = trouble;
        CapturedTraces traces(32);
        EXPECT_FALSE(operation());
        return take(traces);
    }

    QString host;
    unsigned short port = 0;
};

TEST_F(ManagersOperation, IsMade)
{
    EXPECT_TRUE(restore());
    EXPECT_TRUE(askForArchive());
    EXPECT_EQ(host, QStringLiteral("archive"));
    EXPECT_EQ(port, 8010);
    manager.hasArchive = false;
    EXPECT_FALSE(askForArchive());
    EXPECT_EQ(host, QString());
    EXPECT_EQ(port, 0);
    EXPECT_THAT(manager.calls, ElementsAre("getKorveAdminInterface", "restorePelinFileGroup D1 R1 G1",
                                           "getPelinConnectionParameter", "getPelinConnectionParameter"));
}

TEST_F(ManagersOperation, TracesARefusalInItsOwnWords)
{
    const auto refused = [](IF_KRV_c_KRV::eKRVKind kind) {
        return [kind] { throw IF_KRV_c_KRV::exKRV(kind, "no"); };
    };
    const auto restored = [this] { return restore(); };
    const auto asked = [this] { return askForArchive(); };
    EXPECT_THAT(tracesOf(restored, refused(IF_KRV_c_KRV::Invalid_DeviceId)),
                ElementsAre("restorePelinFilegroup: Invalid Device ID - no"));
    EXPECT_THAT(tracesOf(restored, refused(IF_KRV_c_KRV::Invalid_Address)),
                ElementsAre("restorePelinFilegroup: Invalid Address - no"));
    EXPECT_THAT(tracesOf(asked, refused(IF_KRV_c_KRV::Invalid_RecordId)),
                ElementsAre("pelinConnectionParameter: Invalid Record ID - no"));
    EXPECT_THAT(tracesOf(asked, refused(IF_KRV_c_KRV::Request_Failed)),
                ElementsAre("pelinConnectionParameter: Request Failed - no"));
}

TEST_F(ManagersOperation, TracesOtherFailuresWithTheirKind)
{
    const auto lost = [] { throw CORBA::COMM_FAILURE(); };
    EXPECT_THAT(tracesOf([this] { return restore(); }, lost),
                ElementsAre("restorePelinFilegroup for Device/Record D1/R1 failed with exception: COMM_FAILURE",
                            "CORBA System Exception"));
    EXPECT_THAT(tracesOf([this] { return askForArchive(); }, lost),
                ElementsAre("pelinConnectionParameter for Device n/a failed with exception: COMM_FAILURE",
                            "CORBA System Exception"));
}

TEST_F(ManagersOperation, KnowsWhetherTheManagerCanHaveActed)
{
    ASSERT_TRUE(commands.Initialize());
    const auto isUnknownAfter = [this](const std::function<void()> &trouble) {
        manager.trouble = trouble;
        restore();
        return commands.OutcomeIsUnknown();
    };
    EXPECT_TRUE(isUnknownAfter([] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); }));
    EXPECT_FALSE(isUnknownAfter([] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); }));
    EXPECT_TRUE(isUnknownAfter([] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); }));
    EXPECT_FALSE(isUnknownAfter([] { throw IF_KRV_c_KRV::exKRV(IF_KRV_c_KRV::Request_Failed, "no"); }));
    EXPECT_TRUE(isUnknownAfter([] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); }));
    EXPECT_FALSE(isUnknownAfter([] {}));
}

TEST_F(ManagersOperation, NeedsAConnectionAndAnInterface)
{
    ASSERT_TRUE(commands.Initialize());
    handler->Shutdown();
    CapturedTraces traces(32);
    EXPECT_FALSE(restore());
    EXPECT_FALSE(askForArchive());
    EXPECT_THAT(take(traces), ElementsAre("error calling getKorveInterface", "error calling getKorveInterface"));
    Q_EMIT station->ConnectionChanged(alpha);
    EXPECT_FALSE(restore());
    EXPECT_THAT(take(traces), IsEmpty());
}

TEST_F(AdminHandler, SendsAnEmptyListForCopiesWithoutParts)
{
    QString copied;
    EXPECT_EQ(commands.CopyRecord(d1, r1, copied, TQ_KRV::seqFILE_PART_var(), "none"), 0u);
    EXPECT_THAT(admin->calls, ElementsAre("copyRecord D1 R1  none"));
}

TEST_F(AdminHandler, IsNotAvailableWhileTheManagerFailsOrHandsOutNothing)
{
    const auto expectNothing = [this] {
        EXPECT_FALSE(commands.Initialize());
        EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 101u);
        EXPECT_FALSE(commands.restorePelinFilegroup(d1, r1, "G1"));
    };
    ASSERT_TRUE(handler->IsConnected());
    manager.trouble = [] { throw CORBA::NO_RESOURCES(); };
    expectNothing();
    manager.trouble = [] {};
    manager.handsOut = false;
    expectNothing();
    manager.handsOut = true;
    EXPECT_EQ(commands.SetRecordComment(d1, r1, "x"), 0u);
}

TEST_F(AdminHandler, SendsIdentifiersInLatin1AndTextsWhole)
{
    EXPECT_EQ(commands.SetRecordComment(QString::fromUtf8("Dä"), QString::fromUtf8("R€"), QString::fromUtf8("ä€")), 0u);
    EXPECT_THAT(admin->calls, ElementsAre("setRecordComment D\xe4 R? <e4><20ac>"));
}
} // namespace
