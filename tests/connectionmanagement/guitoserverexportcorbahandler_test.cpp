#include "connectionmanagement/guitoserverexportcorbahandler.h"

#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/fakecommands.h"
#include "tests/connectionmanagement/fakeexporter.h"
#include "tests/connectionmanagement/handlerfixture.h"
#include "tests/connectionmanagement/keyedservant.h"

#include <thread>

using namespace KorveGUI;
using TQ_KRV::IF_KORVE_Admin;
using TQ_KRV::IF_KRV_c_KRV;
using testing::ElementsAre;
using testing::IsEmpty;
using Commands = GuiToServerExportCorbaHandler;

namespace
{
const QString d1 = QStringLiteral("D1");
const QString r1 = QStringLiteral("R1");
constexpr char exportId[] = "D1@R1@c@d@e";

/// Connected.
class ExportHandler : public HandlerFixture
{
protected:
    ExportHandler()
    {
        upAll();
        handler->ReconnectToServer();
        exporter->id = exportId;
        admin->record.dataFormat = TQ_KRV::dfIQBW;
    }
    bool exportIt() { return commands.exportRecord(exporter->_this()); }
    /// What @p operation traces when the manager's main interface or its administration fails so.
    std::vector<std::string> tracesOf(const std::function<void()> &operation, const std::function<void()> &trouble)
    {
        IF_KORVE_Admin_var(handler->GetKorveAdminInterface()); // fetched before there is trouble
        manager.trouble = admin->trouble = trouble;
        CapturedTraces traces(32);
        operation();
        manager.trouble = admin->trouble = [] {};
        return take(traces);
    }
    using IF_KORVE_Admin_var = TQ_KRV::IF_KORVE_Admin_var;

    const std::shared_ptr<Handler> handler = std::make_shared<Handler>(alpha, station, QString());
    KeyedServant<FakeAdmin> admin{"admin"};
    KeyedServant<FakeExporter> exporter{"exporter"};
    const Commands commands{handler};
    QString error = QStringLiteral("untouched");
};

TEST_F(ExportHandler, CallsTheManager)
{
    EXPECT_TRUE(commands.connected());
    EXPECT_EQ(commands.deviceID("1.2.3.4"), QStringLiteral("D1.2.3.4"));
    EXPECT_TRUE(exportIt());
    EXPECT_TRUE(commands.cancelExport(exportId));
    EXPECT_THAT(manager.calls, ElementsAre("mapAddressToDeviceId 1.2.3.4", "exportRecording D1@R1@c@d@e",
                                           "cancelExport D1@R1@c@d@e"));
    EXPECT_FALSE(commands.deleteRecord(d1, r1));
    admin->number = 1;
    EXPECT_TRUE(commands.deleteRecord(d1, r1));
    EXPECT_THAT(admin->calls, ElementsAre("deleteRecord D1 R1", "deleteRecord D1 R1"));
}

TEST_F(ExportHandler, DoesNothingWithoutAConnection)
{
    handler->Shutdown();
    CapturedTraces traces(32);
    EXPECT_FALSE(commands.connected());
    EXPECT_EQ(commands.deviceID("1.2.3.4"), QString());
    EXPECT_THAT(take(traces), IsEmpty());
    EXPECT_FALSE(exportIt());
    EXPECT_THAT(take(traces), ElementsAre("Error calling exportRecord while not connected"));
    EXPECT_FALSE(commands.cancelExport(exportId));
    EXPECT_THAT(take(traces), ElementsAre("Error calling cancelExport while not connected"));
    EXPECT_FALSE(commands.deleteRecord(d1, r1));
    EXPECT_THAT(take(traces), ElementsAre("Error calling GetKorveAdminInterface"));
    EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString());
    EXPECT_EQ(error, QStringLiteral("not connected"));
    EXPECT_THAT(take(traces), IsEmpty());
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(ExportHandler, SaysThatTheOutcomeIsUnknownWhenTheAnswerIsLost)
{
    const auto lost = [] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); };
    bool isExportUnknown = false;
    bool isDeletionUnknown = false;
    tracesOf([&] { EXPECT_FALSE(commands.exportRecord(exporter->_this(), &isExportUnknown)); }, lost);
    tracesOf([&] { EXPECT_FALSE(commands.deleteRecord(d1, r1, &isDeletionUnknown)); }, lost);
    EXPECT_TRUE(isExportUnknown);
    EXPECT_TRUE(isDeletionUnknown);
}

TEST_F(ExportHandler, SaysThatTheOutcomeIsKnownWithoutAConnection)
{
    handler->Shutdown();
    const CapturedTraces traces(32);
    bool isExportUnknown = true;
    bool isDeletionUnknown = true;
    EXPECT_FALSE(commands.exportRecord(exporter->_this(), &isExportUnknown));
    EXPECT_FALSE(commands.deleteRecord(d1, r1, &isDeletionUnknown));
    EXPECT_FALSE(isExportUnknown);
    EXPECT_FALSE(isDeletionUnknown);
}

TEST_F(ExportHandler, WithoutAHandlerIsNeverConnected)
{
    const Commands alone(nullptr);
    EXPECT_FALSE(alone.connected());
    EXPECT_FALSE(alone.deleteRecord(d1, r1));
    EXPECT_EQ(alone.recordDataFormat(d1, r1, error), QString());
    EXPECT_EQ(error, QStringLiteral("not connected"));
}

TEST_F(ExportHandler, SaysWhenTheAdministrationIsNotThere)
{
    manager.trouble = [] { throw CORBA::NO_RESOURCES(); };
    CapturedTraces traces(32);
    EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString());
    EXPECT_EQ(error, QStringLiteral("Unable to access CORBA Interface."));
    EXPECT_EQ(take(traces).back(), "Error calling GetKorveAdminInterface");
}

TEST_F(ExportHandler, CallsNobodyWhereTheManagerHandsOutNothing)
{
    manager.handsOut = false;
    CapturedTraces traces(32);
    EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString());
    EXPECT_EQ(error, QStringLiteral("Unable to access CORBA Interface."));
    EXPECT_FALSE(commands.deleteRecord(d1, r1));
    EXPECT_THAT(take(traces),
                ElementsAre("Error calling GetKorveAdminInterface", "Error calling GetKorveAdminInterface"));
    EXPECT_EQ(traces.sourceOf("Error calling GetKorveAdminInterface"),
              "connectionmanagement/guitoserverexportcorbahandler");
}

TEST_F(ExportHandler, TellsTheDataFormat)
{
    EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QStringLiteral("IQBW"));
    EXPECT_EQ(error, QStringLiteral("untouched"));
}

struct FormatCase {
    CORBA::ULong number;
    const char *error;
};

class RecordWithoutFormat : public ExportHandler, public testing::WithParamInterface<FormatCase>
{
};

TEST_P(RecordWithoutFormat, HasAReason)
{
    admin->number = GetParam().number;
    EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString());
    EXPECT_EQ(error, QLatin1String(GetParam().error));
}

INSTANTIATE_TEST_SUITE_P(Numbers, RecordWithoutFormat,
                         testing::Values(FormatCase{500, "The device is not available"},
                                         FormatCase{501, "The record is not available"},
                                         FormatCase{502, "The device is not available"},
                                         FormatCase{503, "unexpected error ID 503"},
                                         FormatCase{4294967295u, "unexpected error ID 4294967295"}),
                         [](const auto &info) { return "Of" + std::to_string(info.param.number); });

TEST_F(ExportHandler, TellsAnUnknownRecordFromOtherFailures)
{
    const auto ask = [this] { EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString()); };
    const auto unknown = [] { throw IF_KORVE_Admin::exAdmin(IF_KORVE_Admin::Invalid_RecordId, "R1"); };
    EXPECT_THAT(tracesOf(ask, unknown), IsEmpty());
    EXPECT_EQ(error, QStringLiteral("The record is not available."));
    EXPECT_THAT(tracesOf(ask, [] { throw CORBA::COMM_FAILURE(); }),
                ElementsAre("recordDataFormat for Device undefined failed with exception: COMM_FAILURE"));
    EXPECT_EQ(error, QStringLiteral("CORBA system exception on retrieving record information."));
}

TEST_F(ExportHandler, TracesRefusalsInTheManagersWords)
{
    const auto refuse = [](IF_KRV_c_KRV::eKRVKind kind) {
        return [kind] { throw IF_KRV_c_KRV::exKRV(kind, "no"); };
    };
    EXPECT_THAT(tracesOf([this] { EXPECT_EQ(commands.deviceID("h@1"), QString()); },
                         refuse(IF_KRV_c_KRV::Invalid_Address)),
                ElementsAre("deviceID(h@1): Invalid Address - no"));
    EXPECT_THAT(tracesOf([this] { EXPECT_FALSE(commands.cancelExport("%1")); },
                         refuse(IF_KRV_c_KRV::Request_Failed)),
                ElementsAre("cancelExport(%1): Request Failed - no"));
    EXPECT_THAT(tracesOf([this] { EXPECT_FALSE(exportIt()); }, refuse(IF_KRV_c_KRV::Invalid_RecordId)),
                ElementsAre("exportRecord for Device/Record D1/R1 failed with exception: User exception: undefined",
                            "CORBA User Exception"));
}

TEST_F(ExportHandler, TracesLostConnections)
{
    const auto lost = [] { throw CORBA::COMM_FAILURE(); };
    const std::string kind = "CORBA System Exception";
    const std::string end = " failed with exception: COMM_FAILURE";
    EXPECT_THAT(tracesOf([this] { commands.deviceID("1.2.3.4"); }, lost),
                ElementsAre("deviceID for Device 1.2.3.4" + end, kind));
    EXPECT_THAT(tracesOf([this] { EXPECT_FALSE(exportIt()); }, lost),
                ElementsAre("exportRecord for Device/Record D1/R1" + end, kind));
    EXPECT_THAT(tracesOf([this] { EXPECT_FALSE(commands.cancelExport(exportId)); }, lost),
                ElementsAre("cancelExport for Device undefined" + end, kind));
    EXPECT_THAT(tracesOf([this] { EXPECT_FALSE(commands.deleteRecord(d1, r1)); }, lost),
                ElementsAre("deleteRecord for Device/Record D1/R1" + end, kind));
}

TEST_F(ExportHandler, ExportsAlsoWhatItCannotName)
{
    const auto lost = [] { throw CORBA::COMM_FAILURE(); };
    for (const char *id : {"", "D1@R1@c@d", "D1@R1@c@d@e@f", "D1@@R1@c@d"}) {
        exporter->id = id;
        EXPECT_TRUE(exportIt()) << id;
        EXPECT_EQ(tracesOf([this] { exportIt(); }, lost).front(),
                  "exportRecord for Device/Record / failed with exception: COMM_FAILURE")
            << id;
    }
    exporter->id = "@D1@@R1@c@d@e@"; // what is empty does not count
    EXPECT_EQ(tracesOf([this] { exportIt(); }, lost).front(),
              "exportRecord for Device/Record D1/R1 failed with exception: COMM_FAILURE");
}

TEST_F(ExportHandler, RefusesAnExporterThatIsNotThere)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(commands.exportRecord(nullptr));
    EXPECT_FALSE(commands.exportRecord(TQ_KRV::IF_ExportCallback::_nil()));
    EXPECT_EQ(take(traces).back(), "CORBA System Exception");
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(ExportHandler, MayBeCalledFromTheExportersThread)
{
    admin->number = 1;
    std::thread exporting([this] {
        EXPECT_TRUE(commands.connected());
        EXPECT_EQ(commands.deviceID("1.2.3.4"), QStringLiteral("D1.2.3.4"));
        EXPECT_TRUE(exportIt());
        EXPECT_TRUE(commands.cancelExport(exportId));
        EXPECT_TRUE(commands.deleteRecord(d1, r1));
        EXPECT_EQ(commands.recordDataFormat(d1, r1, error), QString());
    });
    exporting.join();
    EXPECT_EQ(error, QStringLiteral("unexpected error ID 1"));
    EXPECT_THAT(admin->calls, ElementsAre("deleteRecord D1 R1", "getRecord D1 R1"));
}

TEST_F(ExportHandler, SendsIdentifiersInLatin1)
{
    EXPECT_FALSE(commands.deleteRecord(QString::fromUtf8("Dä"), QString::fromUtf8("R€")));
    EXPECT_THAT(admin->calls, ElementsAre("deleteRecord D\xe4 R?"));
    EXPECT_TRUE(commands.cancelExport(QString::fromUtf8("ä@€")));
    EXPECT_EQ(manager.calls.back(), "cancelExport \xe4@?");
}
} // namespace
