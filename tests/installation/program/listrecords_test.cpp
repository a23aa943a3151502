#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"

#include <QFile>
#include <QProcess>

namespace
{

/// The first program of the README.
class Example : public InstallationFixture
{
protected:
    static Run listRecords(const char *centralService = nullptr)
    {
        QProcess client;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (centralService)
            environment.insert(QStringLiteral("KORVE_CCO"), QLatin1String(centralService));
        client.setProcessEnvironment(environment);
        client.start(QStringLiteral(LISTRECORDS_PROGRAM), QStringList());
        EXPECT_TRUE(client.waitForFinished(30000));
        return {client.exitStatus() == QProcess::NormalExit ? client.exitCode() : -1,
                QString::fromUtf8(client.readAllStandardOutput()), QString::fromUtf8(client.readAllStandardError())};
    }
    static void expectList(const Run &run)
    {
        EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
        EXPECT_TRUE(run.output.contains(QLatin1String("records, error 0\n"))) << run.output.toStdString();
        EXPECT_TRUE(run.output.contains(QLatin1String("  listed, "))) << run.output.toStdString();
        EXPECT_FALSE(run.errors.contains(QLatin1String("No application runs"))) << run.errors.toStdString();
    }
    static void startManager(const QByteArray &faults)
    {
        QFile script(filePath("first.faults"));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly) && script.write(faults) == faults.size());
        script.close();
        shared->manager->kill();
        shared->manager = std::make_unique<ServiceProcess>(
            QStringLiteral(INSTALLATION_PROGRAM), argumentsOf("manager") << QStringLiteral("--faults") << script.fileName());
        EXPECT_TRUE(managerKnowsTheDevice());
    }
};

} // namespace

TEST_F(Example, ListsTheRecordsOfADevice)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("listed.wav"), 10)}).exitCode, 0);
    expectList(listRecords());
}

TEST_F(Example, AsksAgainWhenTheManagerDoesNotAnswer)
{
    startManager("on getAllDevices raise TRANSIENT once");
    expectList(listRecords());
    startManager("");
}

TEST_F(Example, SaysThatNobodyAnswers)
{
    shared->manager->kill();
    const Run run = listRecords();
    shared->manager = start("manager");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, QString());
    EXPECT_TRUE(run.errors.contains(QLatin1String("No recorder manager answers"))) << run.errors.toStdString();
}

TEST_F(Example, NamesAnAddressOfTheCentralServiceThatIsNone)
{
    const Run run = listRecords("localhost:abc");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.errors.contains(QLatin1String("\"localhost:abc\", which is not HOST or HOST:PORT")))
        << run.errors.toStdString();
}
