#include "connectionmanagement/guitoserveradmincorbahandler.h"
#include "connectionmanagement/guitoserverexportcorbahandler.h"
#include "connectionmanagement/guitoserverreplaycorbahandler.h"

#include "idl/korve.hh"
#include "objectmodel/bookmarkentry.h"
#include "objectmodel/netifparams.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/fakeexporter.h"
#include "tests/connectionmanagement/handlerfixture.h"
#include "tests/connectionmanagement/keyedservant.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/omniInterceptors.h>

#include <stdexcept>

using namespace KorveGUI;
using testing::ElementsAre;

namespace
{
const QString d1 = QStringLiteral("D1");
const QString r1 = QStringLiteral("R1");

/// What the remote calls of this thread raise before they go out. (The wire of these contracts would turn most
/// exceptions into others.)
thread_local std::function<void()> raiseInCalls = [] {};

CORBA::Boolean raiseIt(omni::omniInterceptors::clientSendRequest_T::info_T &)
{
    raiseInCalls();
    return true;
}

/// Once and for all: other threads may be calling.
void interceptCalls()
{
    static const bool done = [] {
        omniORB::getInterceptors()->clientSendRequest.add(raiseIt);
        return true;
    }();
    Q_UNUSED(done)
}

void raiseOfDevice()
{
    throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_RECORD_ID, "R1");
}
void raiseOfChannel()
{
    throw TQ_KRV::IF_KRV_c_Chan::exChan(TQ_KRV::IF_KRV_c_Chan::Range_Error, "why");
}
void raiseOther()
{
    throw std::runtime_error("trouble");
}

/// Handlers whose manager is a process of its own.
class CommandsThatRaise : public HandlerFixture
{
protected:
    CommandsThatRaise()
    {
        interceptCalls();
        const QByteArray reference = process.readyWords().value(2).toLatin1();
        managerReference =
            TQ_KRV::IF_KRV_c_KRV::_narrow(CORBA::Object_var(orb.orb()->string_to_object(reference.constData())));
        unregisterManager(); // the one of this process lives, and would keep the name
        registerManager();
        upAll();
        handler->ReconnectToServer();
        const TQ_KRV::IF_KORVE_Admin_var fetched = handler->GetKorveAdminInterface(); // before anything is raised
    }
    /// What @p command traces when its call raises so.
    std::vector<std::string> tracesOf(void (*raise)(), const std::function<void()> &command)
    {
        raiseInCalls = raise;
        CapturedTraces traces(32);
        command();
        raiseInCalls = [] {};
        return take(traces);
    }

    ServiceProcess process{QStringLiteral(MANAGER_PROGRAM), QStringList{neighbourAddress()}};
    const std::shared_ptr<Handler> handler = std::make_shared<Handler>(alpha, station, QString());
};

using Admin = GuiToServerAdminCorbaHandler;

struct AdminCase {
    const char *name;
    std::function<unsigned long(Admin &)> give;
    bool decodes = true;
    bool hasRecord = true;
};

void PrintTo(const AdminCase &command, std::ostream *out)
{
    *out << command.name;
}

unsigned long copyParts(Admin &admin)
{
    QString copied;
    return admin.CopyRecord(d1, r1, copied, TQ_KRV::seqFILE_PART_var(new TQ_KRV::seqFILE_PART), r1);
}
unsigned long readRecord(Admin &admin)
{
    KORVE_XML::KORVE_RecordData record;
    return admin.getRecord(d1, r1, record);
}
unsigned long readTime(Admin &admin)
{
    unsigned long long time = 0;
    bool isSynchronized = false;
    return admin.GetDeviceTime(d1, time, isSynchronized);
}
unsigned long askForLines(Admin &admin)
{
    return admin.overviewSpectrumStreamed(d1, r1, 0, 1, 1, 1, KorveDataTypes::eFFT_Window::Hamming, r1, 1);
}

class AdminCommandThatRaises : public CommandsThatRaise, public testing::WithParamInterface<AdminCase>
{
protected:
    /// As tracesOf(); the last line, and the number.
    std::pair<unsigned long, std::string> outcomeOf(void (*raise)())
    {
        unsigned long number = 0;
        const auto traces = tracesOf(raise, [&] { number = GetParam().give(admin); });
        return {number, traces.size() == 1 ? traces.front() : "not one line"};
    }
    std::pair<unsigned long, std::string> decoded(unsigned long number, const char *exception) const
    {
        const char *const where = GetParam().hasRecord ? " for Device/Record D1/R1" : " for Device D1";
        return {number, std::string(GetParam().name) + where + " failed with exception: " + exception};
    }
    std::pair<unsigned long, std::string> unspecified() const
    {
        const char *const where =
            GetParam().hasRecord ? " for Device/Record 'D1'/'R1' failed" : " for Device'D1' failed";
        return {7000, GetParam().name + std::string(where)};
    }

    Admin admin{handler};
};

const QVector<KORVE_XML::BookmarkEntry> none;
const AdminCase adminCases[] = {
    {"SaveBookmarksToKorve", [](Admin &a) { return a.SaveBookmarksToKorve(d1, r1, none); }},
    {"DeleteBookmarksFromKorve", [](Admin &a) { return a.DeleteBookmarksFromKorve(d1, r1, none); }},
    {"addBookmarkEntries", [](Admin &a) { return a.addBookmarkEntries(d1, r1, none); }, false},
    {"RequestRecordDataDetail", [](Admin &a) { return a.requestRecordDataDetail(d1, r1); }},
    {"SaveHistoryEntryToKorve", [](Admin &a) { return a.SaveHistoryEntryToKorve(d1, r1, r1); }},
    {"DeleteHistoryEntryFromKorve", [](Admin &a) { return a.DeleteHistoryEntryFromKorve(d1, r1, 1); }},
    {"addHistory", [](Admin &a) { return a.addHistory(d1, r1, r1); }, false},
    {"removeHistoryEntry", [](Admin &a) { return a.removeHistoryEntry(d1, r1, 1); }, false},
    {"CopyRecord", copyParts},
    {"copyRecord", [](Admin &a) { return a.copyRecord(d1, r1, 0, 1, r1); }, false},
    {"SetRecordComment", [](Admin &a) { return a.SetRecordComment(d1, r1, r1); }},
    {"SetRecordDeletableFlag", [](Admin &a) { return a.SetRecordDeletableFlag(d1, r1, true); }},
    {"getRecord", readRecord},
    {"overviewSpectrumStreamed", askForLines, false},
    {"GetDeviceTime", readTime, true, false},
    {"SetDeviceTime", [](Admin &a) { return a.SetDeviceTime(d1, 1); }, true, false},
};
INSTANTIATE_TEST_SUITE_P(Commands, AdminCommandThatRaises, testing::ValuesIn(adminCases),
                         [](const auto &info) { return "Of" + std::string(info.param.name); });

TEST_P(AdminCommandThatRaises, DecodesUserExceptionsUnlessItIsOneOfFive)
{
    const char *const ofDevice = "User exception: TQ_KORVE::exKorve::ekINVALID_RECORD_ID: R1";
    EXPECT_EQ(outcomeOf(raiseOfDevice), GetParam().decodes ? decoded(212, ofDevice) : unspecified());
    EXPECT_EQ(outcomeOf(raiseOfChannel),
              GetParam().decodes ? decoded(805, "User exception: undefined") : unspecified());
}

TEST_P(AdminCommandThatRaises, AnswersAnythingElseAsUnspecified)
{
    EXPECT_EQ(outcomeOf(raiseOther), unspecified());
}

TEST_F(CommandsThatRaise, NameTheKindInTheManagersOperations)
{
    Admin admin(handler);
    admin.Initialize();
    QString host;
    unsigned short port = 0;
    const auto restore = [&] { EXPECT_FALSE(admin.restorePelinFilegroup(d1, r1, r1)); };
    const auto ask = [&] { EXPECT_FALSE(admin.pelinConnectionParameter(host, port)); };
    EXPECT_THAT(tracesOf(raiseOfChannel, restore),
                ElementsAre("restorePelinFilegroup for Device/Record D1/R1 failed with exception: User exception: "
                            "undefined",
                            "CORBA User Exception"));
    EXPECT_THAT(tracesOf(raiseOther, restore),
                ElementsAre("restorePelinFilegroup for Device/Record 'D1'/'R1' failed", "CORBA Unspecified Exception"));
    EXPECT_THAT(tracesOf(raiseOfChannel, ask),
                ElementsAre("pelinConnectionParameter for Device n/a failed with exception: User exception: undefined",
                            "CORBA User Exception"));
    EXPECT_THAT(tracesOf(raiseOther, ask),
                ElementsAre("pelinConnectionParameter for Device'n/a' failed", "CORBA Unspecified Exception"));
}

TEST_F(CommandsThatRaise, AreUnspecifiedFailuresOfAReplay)
{
    using KORVE_XML::KORVE_RecordData;
    GuiToServerReplayCorbaHandler replay(handler);
    ASSERT_TRUE(replay.Initialize(d1));
    const auto rate = KORVE_RecordData::VUHF_20M;
    const std::pair<std::string, std::function<unsigned long()>> commands[] = {
        {"StartReplay", [&] { return replay.StartReplay(r1, r1, rate, 0, 8, 1); }},
        {"StartReplay", [&] { return replay.StartReplay(r1, r1, rate, 0, 8, 1, KORVE_XML::NetIfParams::TCP_IF); }},
        {"PauseReplay", [&] { return replay.PauseReplay(r1, r1); }},
        {"ContinueReplay", [&] { return replay.ContinueReplay(r1, r1); }},
        {"StopReplay", [&] { return replay.StopReplay(r1, r1); }}};
    for (const auto &[name, command] : commands)
        for (void (*const raise)() : {raiseOfDevice, raiseOfChannel, raiseOther})
            EXPECT_THAT(tracesOf(raise, [&, &give = command] { EXPECT_EQ(give(), 7000u); }),
                        ElementsAre(name + " for Channel 'D1' failed"));
}

TEST_F(CommandsThatRaise, NameTheKindInAnExport)
{
    KeyedServant<FakeExporter> exporter{"exporter"};
    exporter->id = "D1@R1@c@d@e";
    const GuiToServerExportCorbaHandler commands(handler);
    const std::pair<std::string, std::function<void()>> operations[] = {
        {"exportRecord for Device/Record D1/R1", [&] { EXPECT_FALSE(commands.exportRecord(exporter->_this())); }},
        {"deviceID for Device h", [&] { EXPECT_EQ(commands.deviceID("h"), QString()); }},
        {"cancelExport for Device undefined", [&] { EXPECT_FALSE(commands.cancelExport(r1)); }},
        {"deleteRecord for Device/Record D1/R1", [&] { EXPECT_FALSE(commands.deleteRecord(d1, r1)); }}};
    for (const auto &[head, operation] : operations) {
        EXPECT_THAT(tracesOf(raiseOfChannel, operation),
                    ElementsAre(head + " failed with exception: User exception: undefined", "CORBA User Exception"));
        EXPECT_EQ(tracesOf(raiseOther, operation).back(), "CORBA Unspecified Exception");
    }
    QString error;
    const auto ask = [&] { EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString()); };
    EXPECT_THAT(tracesOf(raiseOfChannel, ask),
                ElementsAre("recordDataFormat for Device undefined failed with exception: User exception: undefined"));
    EXPECT_EQ(error, QStringLiteral("CORBA user exception on retrieving record information."));
    EXPECT_THAT(tracesOf(raiseOther, ask), ElementsAre("recordDataFormat for Device'undefined' failed"));
    EXPECT_EQ(error, QStringLiteral("CORBA unknown exception on retrieving record information."));
}
} // namespace
