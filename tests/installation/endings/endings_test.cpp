#include "installation/calls/servedobjects.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectionobserver.h"
#include "tests/installation/endings/servicecalls.h"
#include "tests/installation/manager/fakeexporter.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"
#include "tests/installation/recorder/widetext.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

#include <array>
#include <random>

using CorbaCommon::OrbHandler;
using installation::Activation;
using installation::ServedObjects;
using testing::IsSubsetOf;

namespace
{

int timesToEnd()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("KORVE_ENDINGS", &isNumber);
    return isNumber ? wanted : 20;
}

class NameCallback : public POA_CCO::Callback
{
public:
    void notify(CORBA::ULong, const char *) override {}
};

class Receiver : public POA_TQ_KORVE_IT::IF_Korve_IT
{
public:
    void processBiteStateNotification(const TQ_KORVE_IT::struBiteStateNotification &) override {}
    void processNotification(const TQ_KORVE_IT::struNotification &) override {}
    void processNotificationAboutSession(const TQ_KORVE_IT::struSessionNotification &) override {}
};

struct EndingCase {
    const char *name;
    const char *role;
    const char *faults; ///< so that calls are certain to be in progress
    std::vector<ServiceLoad::Kind> (*calls)(Installation &);
};

/// A service that is ended while it answers, and started again.
class Ending : public InstallationFixture, public testing::WithParamInterface<EndingCase>
{
protected:
    Ending();
    ~Ending() override;
    void SetUp() override;

    void startWithFaults();
    void findServices();
    void endInTheMidstOfCalls();
    void expectWhatWasAcknowledged();

    const ServedObjects objects{OrbHandler::Instance().keyedPoa()};
    Installation installation;
    std::vector<std::shared_ptr<Activation>> served;

private:
    template <typename Servant> CORBA::Object_ptr serve(const char *key)
    {
        served.push_back(objects.serve<Servant>(key));
        return served.back()->reference();
    }
    std::set<QString> listedRecords() const;
    void removeAcknowledged(const std::set<QString> &records);

    std::minstd_rand random;
    std::unique_ptr<VtConnectionObserver> tree; ///< whose calls are in progress all the time
};

Ending::Ending()
{
    installation.nameCallback = CCO::Callback::_narrow(CORBA::Object_var(serve<NameCallback>("EndingsCallback")));
    installation.receiver = TQ_KORVE_IT::IF_Korve_IT::_narrow(CORBA::Object_var(serve<Receiver>("EndingsReceiver")));
    installation.exporter = TQ_KRV::IF_ExportCallback::_narrow(CORBA::Object_var(serve<FakeExporter>("EndingsExporter")));
    installation.file = writeWavFile(shared->folder.path(), QStringLiteral("ending.wav"), 64).toUtf8();
    tree = std::make_unique<VtConnectionObserver>(QStringLiteral("/KORVE"), QStringLiteral("/Endings"),
                                                  VtConnectData{address(), QString()}, QString());
}

Ending::~Ending()
{
    objects.refuseCalls();
    EXPECT_TRUE(objects.waitForCalls());
}

void Ending::SetUp()
{
    ASSERT_EQ(import({QString::fromUtf8(installation.file)}).exitCode, 0);
    ASSERT_NO_FATAL_FAILURE(startWithFaults());
    ASSERT_NO_FATAL_FAILURE(findServices());
    installation.record = listedRecords().rbegin()->toUtf8();
}

void Ending::startWithFaults()
{
    const QString script = filePath("ending.faults");
    QFile file(script);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(GetParam().faults);
    file.close();
    process(GetParam().role).reset();
    process(GetParam().role) = std::make_unique<ServiceProcess>(
        QStringLiteral(INSTALLATION_PROGRAM),
        argumentsOf(GetParam().role) + QStringList{QStringLiteral("--faults"), script});
}

/// Waits, bounded, until they are registered: a service that has been started anew may not be at once.
void Ending::findServices()
{
    ASSERT_TRUE(managerKnowsTheDevice());
    installation.names = OrbHandler::Instance().centralService(std::chrono::seconds(10));
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
            try {
                const CORBA::Object_var found =
                    installation.names->Resolve(recorderPath("IF_Control"), CCO::rtInstallation);
                const CORBA::Object_var importer =
                    installation.names->Resolve(recorderPath("IF_Import"), CCO::rtInstallation);
                installation.recorder = TQ_KORVE::IF_Control::_narrow(found);
                return !CORBA::is_nil(installation.recorder) && !CORBA::is_nil(importer);
            } catch (const CORBA::SystemException &) {
                return false;
            }
        },
        patienceMs));
    installation.manager = manager();
    installation.admin = installation.manager->getKorveAdminInterface();
}

void Ending::endInTheMidstOfCalls()
{
    ServiceLoad load(GetParam().calls(installation));
    EXPECT_TRUE(load.isUnderWay(std::uniform_int_distribution(0, 40)(random))) << load.unanswered();
    load.expectTheEnd();
    EXPECT_EQ(process(GetParam().role)->end(), 0);
    load.finish();
}

void Ending::expectWhatWasAcknowledged()
{
    std::set<QString> entries;
    TQ_KORVE::seqHistory_var history = installation.recorder->getHistory(installation.record);
    for (CORBA::ULong position = 0; position < history->length(); ++position)
        entries.insert(narrow(history[position].historyEntry));
    EXPECT_THAT(installation.entries.take(), IsSubsetOf(entries));

    const std::set<QString> records = installation.records.take();
    EXPECT_THAT(records, IsSubsetOf(listedRecords()));
    removeAcknowledged(records);

    for (const QString &id : installation.channels.take()) {
        const TQ_KRV::IF_KRV_c_Chan_var channel = installation.manager->getKorveChannelInterface(id.toLatin1());
        ASSERT_FALSE(CORBA::is_nil(channel)) << id.toStdString();
        channel->removeChannelForced();
    }
}

std::set<QString> Ending::listedRecords() const
{
    std::set<QString> ids;
    const TQ_KORVE::seqMETA_DATA_var list = installation.recorder.in()->listAllRecordsEx3();
    for (CORBA::ULong position = 0; position < list->length(); ++position)
        ids.insert(QString::fromUtf8(list.in()[position].recordID));
    return ids;
}

/// So that many ends do not make many records.
void Ending::removeAcknowledged(const std::set<QString> &records)
{
    for (const QString &id : records) {
        installation.recorder->setDeletableFlagOfRecord(id.toUtf8());
        EXPECT_TRUE(installation.recorder->removeRecord(id.toUtf8()));
    }
}

} // namespace

TEST_P(Ending, IsCleanAndLosesNothingThatWasAcknowledged)
{
    for (int time = 1; time <= timesToEnd() && !HasFailure(); ++time) {
        SCOPED_TRACE(testing::Message() << "end " << time);
        endInTheMidstOfCalls();
        ASSERT_NO_FATAL_FAILURE(startWithFaults());
        ASSERT_NO_FATAL_FAILURE(findServices());
        expectWhatWasAcknowledged();
    }
}

class EndingOfAClient : public InstallationFixture
{
};

/// Some at once, so that each ends while its neighbours keep the services busy.
TEST_F(EndingOfAClient, IsClean)
{
    constexpr int atOnce = 4;
    ASSERT_TRUE(managerKnowsTheDevice());
    for (int ended = 0; ended < timesToEnd() && !HasFailure(); ended += atOnce) {
        std::array<QProcess, atOnce> clients;
        for (QProcess &client : clients)
            client.start(QStringLiteral(LISTRECORDS_PROGRAM), QStringList());
        for (QProcess &client : clients) {
            EXPECT_TRUE(client.waitForFinished(patienceMs));
            EXPECT_EQ(client.exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(client.exitCode(), 0) << client.readAllStandardError().constData();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Services, Ending,
    testing::Values(EndingCase{"CentralService", "cco", "on Resolve delay 50ms\n", callsOfCentralService},
                    EndingCase{"Recorder", "recorder", "on setRecordComment delay 50ms\non addHistory delay 50ms\n",
                               callsOfRecorder},
                    EndingCase{"Manager", "manager", "on setRecordComment delay 50ms\non getAllRecords delay 50ms\n",
                               callsOfManager}),
    [](const auto &info) { return std::string(info.param.name); });
