#include "tests/apps/korvectl/korvectlfixture.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/outage.h"
#include "tests/support/waiting.h"

#include <QDateTime>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest/QTest>

namespace
{

/// The client of a host whose recorder has one record of a second.
class Korvectl : public KorvectlFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
        const Run done = import({writeWavFile(shared->folder.path(), QStringLiteral("one second.wav"), 8000)});
        ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
        recordId = done.output.trimmed().section(QStringLiteral(": "), -1);
    }

    static QString recordId;
};

QString Korvectl::recordId;

TEST_F(Korvectl, ListsDevices)
{
    const Run run = ask(words("devices"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.errors, QString());
    const QStringList lines = run.output.split(u'\n');
    ASSERT_EQ(lines.size(), 3) << run.output.toStdString();
    EXPECT_THAT(lines[0].simplified().toStdString(), "DEVICE ADDRESS STATE FIRMWARE");
    EXPECT_TRUE(lines[1].simplified().startsWith(QStringLiteral("REC1 %1 available").arg(address())));
}

TEST_F(Korvectl, ListsDevicesForPrograms)
{
    const Run run = ask(words("devices --json"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    ASSERT_EQ(array(run).size(), 1);
    const QJsonObject device = array(run).first().toObject();
    EXPECT_EQ(device[QStringLiteral("device")].toString(), QLatin1String("REC1"));
    EXPECT_EQ(device[QStringLiteral("address")].toString(), address());
    EXPECT_TRUE(device[QStringLiteral("available")].toBool());
}

TEST_F(Korvectl, ListsRecordsInUnitsForPeople)
{
    for (const char *line : {"records", "records REC1", "records --subsystem Main"}) {
        const Run run = ask(words(line));
        ASSERT_EQ(run.exitCode, 0) << line << ": " << run.errors.toStdString();
        const QStringList lines = run.output.split(u'\n');
        ASSERT_EQ(lines.size(), 3) << run.output.toStdString();
        EXPECT_TRUE(lines[1].startsWith(QLatin1String("REC1    ") + recordId)) << run.output.toStdString();
        EXPECT_TRUE(lines[1].contains(QLatin1String("0:00:01.000  16.0 kB   16.0 kB/s"))) << run.output.toStdString();
    }
}

TEST_F(Korvectl, ListsRecordsForPrograms)
{
    const Run run = ask(words("records --json"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    ASSERT_EQ(array(run).size(), 1);
    const QJsonObject record = array(run).first().toObject();
    EXPECT_EQ(record[QStringLiteral("device")].toString(), QLatin1String("REC1"));
    EXPECT_EQ(record[QStringLiteral("record")].toString(), recordId);
    EXPECT_EQ(record[QStringLiteral("sizeBytes")].toDouble(), 16000);
    EXPECT_EQ(record[QStringLiteral("durationUs")].toDouble(), 1000000);
    const auto begin = QDateTime::fromString(record[QStringLiteral("begin")].toString(), Qt::ISODateWithMs);
    EXPECT_EQ(begin.toMSecsSinceEpoch(), qint64(record[QStringLiteral("beginUs")].toDouble()) / 1000);
    EXPECT_EQ(begin.timeSpec(), Qt::UTC);
}

TEST_F(Korvectl, NamesACommandThatItDoesNotHave)
{
    for (const auto &[line, word] : {std::pair("rekords --json", "rekords"), std::pair("replay begin REC1", "begin")}) {
        const Run run = ask(words(line));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.errors.section(u'\n', 0, 0),
                  QStringLiteral("korvectl: There is no command \"%1\".").arg(QLatin1String(word)));
    }
}

TEST_F(Korvectl, ExplainsEachNumberToPrograms)
{
    const Run run = ask(words("errors 18446744073709551615 --flow Admin --json"));
    EXPECT_TRUE(run.output.contains(QLatin1String("\"number\": \"18446744073709551615\""))) << run.output.toStdString();
}

TEST_F(Korvectl, SaysThatADeviceIsUnknown)
{
    const Run run = ask(words("records REC9"));
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.output, QString());
    EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(QLatin1String("REC9"))) << run.errors.toStdString();
}

TEST_F(Korvectl, TracesToStandardErrorOnlyWhenAsked)
{
    const Run run = ask(words("-v devices --json"));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.errors.contains(QLatin1String("Connected to Subsystem path"))) << run.errors.toStdString();
    EXPECT_EQ(array(run).size(), 1);
}

TEST_F(Korvectl, NamesASubsystemThatHasNoManager)
{
    const Run run = ask(words("devices --subsystem Nowhere --timeout 1"));
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(QLatin1String("Nowhere"))) << run.errors.toStdString();
}

TEST_F(Korvectl, NamesTheAddressWhereNobodyAnswers)
{
    const LoopbackLease nobody;
    const Run run = ask(words("devices --timeout 1"), nobody.address());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, QString());
    EXPECT_EQ(run.errors, QStringLiteral("korvectl: The central object service at %1:8003 did not answer within 1 s.\n")
                              .arg(nobody.address()));
}

TEST_F(Korvectl, RefusesAnAddressOfTheCentralServiceThatIsNone)
{
    for (const char *const wrong : {"localhost:abc", "localhost:", ":99999", "localhost:99999", "a b"}) {
        const Run run = ask(words("devices"), QLatin1String(wrong));
        EXPECT_EQ(run.exitCode, 1) << wrong;
        EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(QLatin1String(wrong))) << run.errors.toStdString();
    }
}

TEST_F(Korvectl, TracesNoFailureWhenAllIsWell)
{
    for (const char *const line : {"devices -v", "records -v", "tree ls -v", "replay status -v", "time get REC1 -v"}) {
        const Run run = ask(words(line));
        EXPECT_EQ(run.exitCode, 0) << line;
        EXPECT_FALSE(run.errors.contains(QRegularExpression(QStringLiteral("fail|error|not |unable"),
                                                            QRegularExpression::CaseInsensitiveOption)))
            << line << '\n' << run.errors.toStdString();
    }
}

TEST_F(Korvectl, TellsItsVersion)
{
    EXPECT_TRUE(ask(words("--version")).output.startsWith(QLatin1String("korvectl ")));
    EXPECT_EQ(ask(words("--version")).exitCode, 0);
}

TEST_F(Korvectl, WaitsForServicesThatStandStillNoLongerThanToldTo)
{
    for (ServiceProcess *const service : {shared->centralService.get(), shared->manager.get()}) {
        const Outage outage(*service);
        const Run run = ask(words("records --timeout 1"));
        EXPECT_TRUE(outage.lasts());
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(isOneSentence(run.errors)) << run.errors.toStdString();
        EXPECT_TRUE(run.errors.contains(address() + QLatin1String(":8003")));
    }
}

TEST_F(Korvectl, FindsAManagerThatIsStillStarting)
{
    shared->manager->kill();
    QProcess client;
    client.start(QStringLiteral(KORVECTL_PROGRAM), words("devices --timeout 25"));
    ASSERT_TRUE(client.waitForStarted());
    shared->manager = start("manager");
    ASSERT_TRUE(QTest::qWaitFor([&] { return client.state() == QProcess::NotRunning; }, patienceMs));
    EXPECT_EQ(client.exitCode(), 0) << client.readAllStandardError().toStdString();
}

} // namespace
