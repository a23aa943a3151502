#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include "orbconnection/orbhandler.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

#include <csignal>

namespace
{

using Installation = InstallationFixture;

/// The exit code of a manager that gets @p signal once it is ready; -1 when it does not end by itself.
int exitCodeAfter(int signal, const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(INSTALLATION_PROGRAM), arguments);
    while (!process.canReadLine())
        if (!process.waitForReadyRead(20000))
            return -1;
    ::kill(static_cast<pid_t>(process.processId()), signal);
    const bool hasEnded = process.waitForFinished(20000);
    return hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool treeAnswers()
{
    const QString reference = QStringLiteral("corbaloc::1.2@%1:8004/ValueTree").arg(qEnvironmentVariable("KORVE_ADDRESS"));
    const CORBA::ORB_ptr orb = CorbaCommon::OrbHandler::Instance().orb();
    try {
        return !CORBA::Object_var(orb->string_to_object(reference.toLatin1()))->_non_existent();
    } catch (const CORBA::SystemException &) {
        return false;
    }
}

} // namespace

TEST_F(Installation, TellsWhenItsServicesAreReady)
{
    EXPECT_EQ(shared->centralService->readyWords(),
              QStringList({QStringLiteral("ready"), QStringLiteral("cco"), address() + QLatin1String(":8003")}));
    EXPECT_EQ(shared->manager->readyWords(),
              QStringList({QStringLiteral("ready"), QStringLiteral("manager"), address() + QLatin1String(":8004")}));
    EXPECT_EQ(shared->recorder->readyWords().value(1), QLatin1String("recorder"));
    EXPECT_TRUE(shared->recorder->readyWords().value(2).startsWith(address() + QLatin1Char(':')));
}

TEST_F(Installation, NamesWorkstationDevicesAndArchive)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    EXPECT_EQ(QString::fromUtf8(CORBA::String_var(found->getWorkstationName())), address());
    EXPECT_EQ(QString::fromUtf8(CORBA::String_var(found->mapDeviceIdToAddress("REC1"))), address());
    CORBA::String_var host;
    CORBA::UShort port = 0;
    EXPECT_TRUE(found->getPelinConnectionParameter(host.out(), port));
    EXPECT_EQ(port, 8010);
}

TEST_F(Installation, CarriesTextsOfAllKindsBetweenProcesses)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("text.wav"), 10)}).exitCode, 0);
    const QByteArray id = recordIds().constLast().toLatin1();
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    const TQ_KRV::IF_KORVE_Admin_var admin = found->getKorveAdminInterface();
    const wchar_t text[] = {L'\u00e4', L'\u4e2d', 0xd83d, 0xde00, 0}; // the last character takes two units
    ASSERT_EQ(admin->setRecordComment("REC1", id, text), 0u);
    TQ_KRV::struRECORD_DATA_var record;
    ASSERT_EQ(admin->getRecord("REC1", id, record.out()), 0u);
    EXPECT_STREQ(record->recordName.in(), text);
    EXPECT_THROW(admin->getRecord("REC1", "R0", record.out()), TQ_KRV::IF_KORVE_Admin::exAdmin);
}

TEST_F(Installation, HasAllAgainAfterAKillOfTheManager)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const QStringList before = recordIds();
    shared->manager->kill();
    EXPECT_THROW(recordIds(), CORBA::Exception);
    shared->manager = start("manager");
    ASSERT_TRUE(managerKnowsTheDevice());
    EXPECT_EQ(recordIds(), before);
}

TEST_F(Installation, HasItsManagerRegisteredBeforeItsTreeAnswers)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    shared->manager->kill();
    for (int round = 0; round < 3; ++round) { // the wrong order does not show each time
        ASSERT_TRUE(QTest::qWaitFor([] { return CORBA::is_nil(TQ_KRV::IF_KRV_c_KRV_var(manager())); }, patienceMs));
        QProcess process;
        process.start(QStringLiteral(INSTALLATION_PROGRAM), argumentsOf("manager"));
        for (const QDeadlineTimer end(20000); !treeAnswers() && !end.hasExpired();) {
            // A client that waits for the tree does the same, at a smaller pace.
        }
        EXPECT_FALSE(CORBA::is_nil(TQ_KRV::IF_KRV_c_KRV_var(manager())));
        process.kill();
        process.waitForFinished();
    }
    shared->manager = start("manager");
}

TEST_F(Installation, FillsANewCentralService)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    shared->centralService->kill();
    shared->centralService = start("cco");
    EXPECT_TRUE(managerKnowsTheDevice());
}

TEST_F(Installation, KeepsItsRecordsOverAKillOfTheRecorder)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const QStringList before = recordIds();
    shared->recorder->kill();
    shared->recorder = start("recorder");
    const bool hasAll = QTest::qWaitFor(
        [&] {
            try {
                return recordIds() == before;
            } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &) {
                return false;
            }
        },
        20000);
    EXPECT_TRUE(hasAll);
}

TEST_F(Installation, EndsInOrderOnRequest)
{
    shared->manager->kill();
    const QStringList arguments{QStringLiteral("--role"), QStringLiteral("manager"), QStringLiteral("--state"),
                                filePath("manager")};
    for (const int signal : {SIGTERM, SIGINT})
        EXPECT_EQ(exitCodeAfter(signal, arguments), 0);
    shared->manager = start("manager");
}

TEST_F(Installation, NamesTheSettingThatIsWrong)
{
    const QString path = filePath("wrong.ini");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("[recorder]\ndevice=a/b\n") > 0);
    file.close();
    const Run refused = run({QStringLiteral("--role"), QStringLiteral("recorder"), QStringLiteral("--state"),
                             filePath("wrong"), QStringLiteral("--config"), path});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.errors.contains(path + QLatin1String(": [recorder] device=a/b is not")))
        << refused.errors.toStdString();
}

TEST_F(Installation, SaysWhyAServiceCannotStart)
{
    const Run second = run({QStringLiteral("--role"), QStringLiteral("cco")});
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_TRUE(second.errors.contains(address())) << second.errors.toStdString();

    const Run foreign =
        run({QStringLiteral("--role"), QStringLiteral("recorder"), QStringLiteral("--state"), filePath("host.ini")});
    EXPECT_EQ(foreign.exitCode, 1);
    EXPECT_TRUE(foreign.errors.contains(filePath("host.ini"))) << foreign.errors.toStdString();
}
