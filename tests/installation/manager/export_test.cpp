#include "tests/installation/manager/exportingrecorder.h"
#include "tests/installation/manager/fakeexporter.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/servedobject.h"

#include "installation/manager/exports.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QtTest/QTest>

#include <future>
#include <list>

using testing::ElementsAre;
using Kinds = TQ_KRV::IF_KRV_c_KRV;

namespace
{

/// A manager, and the recorder "EXPORTER" with the record "R1" of two files.
class Export : public ManagerFixture
{
protected:
    Export()
    {
        startManager();
        EXPECT_TRUE(becomesAvailable("EXPORTER"));
    }
    /// The manager goes before what it uses, sinks before the recorder that waits for their end.
    ~Export() override
    {
        service.reset();
        exporter->sinks.clear();
    }

    void start(const ServedObject<FakeExporter> &exporter)
    {
        const CORBA::Object_var object = exporter.reference();
        manager->exportRecording(TQ_KRV::IF_ExportCallback_var(TQ_KRV::IF_ExportCallback::_narrow(object)));
    }
    void start() { start(exporter); }

    /// The recorder is about to send, and hangs.
    bool isSending(const ServedObject<FakeExporter> &exporter)
    {
        return exporter->notes.have(3) &&
               QTest::qWaitFor([&] { return exporter->sinks["R1.sigmf-data"]->isConnected(); }, patienceMs);
    }
    void limitEnds()
    {
        configuration.timing.exportEndLimit = std::chrono::milliseconds(100);
        startManager();
        ASSERT_TRUE(becomesAvailable("EXPORTER"));
    }
    /// The recorder is asked for longer than that limit, and the export goes on.
    bool waitsOn()
    {
        const int before = fake->questions;
        const bool isAsked = QTest::qWaitFor([&] { return fake->questions > before + 20; }, patienceMs);
        return isAsked && !isStarted();
    }
    bool isStarted()
    {
        try {
            start();
            return true;
        } catch (const Kinds::exKRV &) {
            return false;
        }
    }

    ServedObject<ExportingRecorder> fake{cco, "KorveRecorder/EXPORTER/IF_Control"};
    ServedObject<FakeExporter> exporter{"exporter"};
};

} // namespace

TEST_F(Export, SendsEachFileOfTheRecord)
{
    start();
    EXPECT_EQ(exporter->end(), "end well");
    EXPECT_THAT(exporter->notes.all(),
                ElementsAre("started", "files R1.sigmf-data R1.sigmf-meta", "stream R1.sigmf-data 200000",
                            "good R1.sigmf-data", "stream R1.sigmf-meta 11", "good R1.sigmf-meta", "end well"));
    for (const auto &[name, bytes] : fake->files)
        EXPECT_EQ(exporter->sinks[name]->content(), bytes) << name;
}

TEST_F(Export, IsAboutWhatItsIdSaysOnlyIfThatHasFiveFields)
{
    exporter->device.clear();
    exporter->record.clear();
    for (const char *id : {"EXPORTER@R1@a@b", "EXPORTER@R1@a@b@c@d"}) {
        exporter->id = id;
        EXPECT_FALSE(isStarted()) << id;
    }
    exporter->id = "EXPORTER@R1@@a@b@c"; // what is empty does not count
    EXPECT_TRUE(isStarted());
    EXPECT_EQ(exporter->end(), "end well");
}

TEST_F(Export, HasTheRealRecorderSendItsFiles)
{
    ASSERT_TRUE(becomesAvailable("REC1"));
    exporter->device = "REC1";
    exporter->record = importRecord(QStringLiteral("first.wav"), 1000).toStdString();
    start();
    EXPECT_EQ(exporter->end(), "end well");
    ASSERT_EQ(exporter->sinks.size(), 2u);
    for (const auto &[name, sink] : exporter->sinks) {
        QFile file(folder.filePath("recorder/recordings/" + QString::fromStdString(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        EXPECT_EQ(sink->content(), file.readAll().toStdString()) << name;
    }
}

TEST_F(Export, SendsWhatIsMissing)
{
    exporter->offsets["R1.sigmf-data"] = 199990;
    exporter->offsets["R1.sigmf-meta"] = 11;
    start();
    EXPECT_EQ(exporter->end(), "end well");
    EXPECT_EQ(exporter->sinks["R1.sigmf-data"]->content(), std::string(10, 'd'));
    EXPECT_EQ(exporter->sinks["R1.sigmf-meta"]->content(), "");
}

TEST_F(Export, PassesOverWhatIsNotWanted)
{
    exporter->answers["R1.sigmf-data"] = "";
    start();
    EXPECT_EQ(exporter->end(), "end well");
    EXPECT_THAT(exporter->notes.all(),
                ElementsAre("started", "files R1.sigmf-data R1.sigmf-meta", "stream R1.sigmf-data 200000",
                            "stream R1.sigmf-meta 11", "good R1.sigmf-meta", "end well"));
}

TEST_F(Export, SendsFilesWithOddNames)
{
    fake->files = {{"a b@c?d%1#\xc3\xa4.data", "content"}};
    start();
    EXPECT_EQ(exporter->end(), "end well");
    EXPECT_EQ(exporter->sinks.begin()->second->content(), "content");
}

TEST_F(Export, TakesDeviceAndRecordFromTheIdWhenTheyAreMissing)
{
    exporter->device.clear();
    exporter->record.clear();
    exporter->answers = {{"R1.sigmf-data", ""}, {"R1.sigmf-meta", ""}};
    start();
    EXPECT_EQ(exporter->end(), "end well");
    exporter->id = "EXPORTER@R1@a@b";
    EXPECT_EQ(kindRaisedBy([&] { start(); }), Kinds::Invalid_DeviceId);
}

TEST_F(Export, IsRefusedForWhatIsNotThere)
{
    exporter->device = "REC2";
    EXPECT_EQ(kindRaisedBy([&] { start(); }), Kinds::Invalid_DeviceId);
    exporter->device = "EXPORTER";
    exporter->record = "R2";
    EXPECT_EQ(kindRaisedBy([&] { start(); }), Kinds::Invalid_RecordId);
    EXPECT_EQ(kindRaisedBy([&] { manager->exportRecording(TQ_KRV::IF_ExportCallback::_nil()); }),
              Kinds::Request_Failed);
}

TEST_F(Export, IsRefusedForAnExporterThatDoesNotAnswer)
{
    const MutePort silence;
    const QByteArray reference = "corbaloc::1.2@127.0.0.1:" + QByteArray::number(silence.port()) + "/Silent";
    const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object(reference.constData());
    const TQ_KRV::IF_ExportCallback_var silent = TQ_KRV::IF_ExportCallback::_unchecked_narrow(object);
    EXPECT_EQ(kindRaisedBy([&] { manager->exportRecording(silent); }), Kinds::Request_Failed);
}

TEST_F(Export, FailsWithAnAddressThatIsNone)
{
    exporter->answers["R1.sigmf-data"] = "nowhere";
    start();
    EXPECT_EQ(exporter->end(), "end badly: R1.sigmf-data cannot be sent to \"nowhere\"");
    EXPECT_EQ(exporter->notes.all().at(3), "bad R1.sigmf-data");
}

TEST_F(Export, FailsBehindTheEndOfAFile)
{
    exporter->offsets["R1.sigmf-data"] = 200001;
    start();
    EXPECT_THAT(exporter->end(), testing::StartsWith("end badly: R1.sigmf-data cannot be sent to"));
}

TEST_F(Export, FailsWhenTheRecorderCannotConnect)
{
    const RefusingPort port;
    exporter->answers["R1.sigmf-data"] = "127.0.0.1:" + std::to_string(port.port());
    start();
    EXPECT_EQ(exporter->end(), "end badly: the recorder refuses: nobody listens there");
}

TEST_F(Export, FailsWhenTheExporterClosesTheConnection)
{
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    exporter->sinks["R1.sigmf-data"]->close();
    EXPECT_EQ(exporter->end(), "end badly: the connection has been closed");
}

TEST_F(Export, CanBeCancelled)
{
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    EXPECT_NO_THROW(manager->cancelExport(exporter->id.c_str()));
    EXPECT_EQ(exporter->end(), "end badly: the export was cancelled");
    EXPECT_EQ(kindRaisedBy([&] { manager->cancelExport(exporter->id.c_str()); }), Kinds::Request_Failed);
}

TEST_F(Export, CanBeCancelledBetweenTwoFiles)
{
    exporter->atEndOfFile = [this] { manager->cancelExport(exporter->id.c_str()); };
    start();
    EXPECT_EQ(exporter->end(), "end badly: the export was cancelled");
    EXPECT_THAT(exporter->notes.all(), testing::Not(testing::Contains("stream R1.sigmf-meta 11")));
}

TEST_F(Export, EndsWithAnExporterThatHasDied)
{
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    exporter->die();
    EXPECT_EQ(exporter->end(), "end badly: the exporter does not answer any more");
}

TEST_F(Export, EndsWhenTheRecorderHasRestarted)
{
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    const ServedObject<ExportingRecorder> restarted(cco, "KorveRecorder/EXPORTER/another");
    CORBA::Object_var(cco->Unregister("KorveRecorder/EXPORTER/IF_Control", 0)); // else it keeps the name while it lives
    registerRecorder("EXPORTER", CORBA::Object_var(restarted.reference()));
    EXPECT_EQ(exporter->end(), "end badly: the recorder has restarted");
}

TEST_F(Export, EndsWhenTheRecorderStaysSilent)
{
    configuration.timing.exportSilenceLimit = std::chrono::milliseconds(100);
    startManager();
    ASSERT_TRUE(becomesAvailable("EXPORTER"));
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    fake.die();
    EXPECT_EQ(exporter->end(), "end badly: the recorder is silent");
}

TEST_F(Export, EndsWhenTheEndOfATransferIsNotTold)
{
    limitEnds();
    fake->tellsEnds = false;
    start();
    EXPECT_EQ(exporter->end(),
              "end badly: the recorder does not send any more and has not told how it ended");
    EXPECT_EQ(exporter->notes.all().at(3), "bad R1.sigmf-data");
}

TEST_F(Export, WaitsForARecorderThatStillSends)
{
    limitEnds();
    fake->hangs = true;
    start();
    ASSERT_TRUE(isSending(exporter));
    EXPECT_TRUE(waitsOn());
    exporter->sinks["R1.sigmf-data"]->close();
    EXPECT_EQ(exporter->end(), "end badly: the connection has been closed");
}

TEST_F(Export, WaitsForARecorderThatDoesNotSayWhatItSends)
{
    limitEnds();
    fake->hangs = true;
    fake->tellsTransfers = false;
    start();
    ASSERT_TRUE(isSending(exporter));
    EXPECT_TRUE(waitsOn());
}

TEST_F(Export, MayBeBegunAnewByWhoHearsOfItsEnd)
{
    exporter->answers = {{"R1.sigmf-data", ""}, {"R1.sigmf-meta", ""}};
    std::promise<bool> isAnew;
    exporter->atEnd = [&] { isAnew.set_value(isStarted()); };
    start();
    EXPECT_TRUE(isAnew.get_future().get());
}

TEST_F(Export, RunsOnlyOnceAtATime)
{
    fake->hangs = true;
    start();
    EXPECT_EQ(kindRaisedBy([&] { start(); }), Kinds::Request_Failed);
}

TEST_F(Export, IsRefusedByAManagerThatEnds)
{
    const installation::ServedObjects objects(TestOrb::instance().insPoa());
    installation::Exports exports(objects, nullptr, {});
    exports.stop();
    EXPECT_THROW(exports.start({}), std::runtime_error);
}

TEST_F(Export, IsOneOfSoManyAtOnce)
{
    fake->hangs = true;
    std::list<ServedObject<FakeExporter>> exporters;
    for (std::ptrdiff_t number = 0; number < installation::Exports::maximumExports; ++number) {
        exporters.emplace_back("exporter" + std::to_string(number))->id = "export" + std::to_string(number);
        start(exporters.back());
    }
    EXPECT_EQ(kindRaisedBy([&] { start(); }), Kinds::Request_Failed);
    ASSERT_TRUE(isSending(exporters.back()));
    exporters.back()->sinks.clear(); // one that ends makes room
    EXPECT_EQ(exporters.back()->end(), "end badly: the connection has been closed");
    EXPECT_TRUE(QTest::qWaitFor([&] { return isStarted(); }, patienceMs));
    service.reset();
    for (auto &other : exporters)
        other->sinks.clear();
}
