#include "tests/apps/korvectl/korvectlfixture.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QtTest/QTest>

namespace
{

/// What watches a manager that is killed and comes back.
class KorvectlWatch : public KorvectlFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
    }

    void begin(const char *command) { watch.start(QStringLiteral(KORVECTL_PROGRAM), words(command)); }
    /// Waits, bounded, until what has been printed contains that text so many times.
    bool prints(const QString &text, int times)
    {
        return QTest::qWaitFor(
            [&] {
                output += QString::fromUtf8(watch.readAllStandardOutput());
                errors += QString::fromUtf8(watch.readAllStandardError());
                return (output + errors).count(text) >= times;
            },
            patienceMs);
    }
    int exitCodeWhenTerminated()
    {
        watch.terminate();
        return watch.waitForFinished(patienceMs) && watch.exitStatus() == QProcess::NormalExit ? watch.exitCode() : -1;
    }

    QProcess watch;
    QString output;
    QString errors;
};

TEST_F(KorvectlWatch, SaysThatTheManagerIsLostAndThereAgain)
{
    begin("tree watch /KORVE/Device/REC1/KorveAvailable");
    ASSERT_TRUE(prints(QStringLiteral("  valid  true\n"), 1)) << errors.toStdString();
    shared->manager->kill();
    ASSERT_TRUE(prints(QStringLiteral("is lost"), 1));
    shared->manager = start("manager");
    ASSERT_TRUE(prints(QStringLiteral("  valid  true\n"), 2));
    EXPECT_EQ(errors, QStringLiteral("korvectl: The value tree at %1:8004 is lost; its values are shown again when it "
                                     "is back.\nkorvectl: The value tree at %1:8004 is there again.\n")
                          .arg(address()));
    EXPECT_FALSE(output.contains(QLatin1String("connection lost"))) << output.toStdString();
    EXPECT_EQ(exitCodeWhenTerminated(), 0);
}

TEST_F(KorvectlWatch, TellsProgramsOfTheSameByEvents)
{
    begin("tree watch --json /KORVE/Device/REC1/KorveAvailable");
    ASSERT_TRUE(prints(QStringLiteral("\"value\":true"), 1)) << errors.toStdString();
    shared->manager->kill();
    ASSERT_TRUE(prints(QStringLiteral("\"event\":\"lost\""), 1));
    shared->manager = start("manager");
    ASSERT_TRUE(prints(QStringLiteral("\"value\":true"), 2));
    EXPECT_EQ(output.count(QLatin1String("\"event\":\"connected\"")), 2) << output.toStdString();
    EXPECT_EQ(output.count(QLatin1String("\"event\":\"lost\"")), 1) << output.toStdString();
    EXPECT_EQ(errors, QString());
    EXPECT_EQ(exitCodeWhenTerminated(), 0);
}

TEST_F(KorvectlWatch, OfRecordsSaysThatTheManagerIsLostAndThereAgain)
{
    begin("watch");
    ASSERT_TRUE(prints(QStringLiteral("TIME "), 1)) << errors.toStdString();
    shared->manager->kill();
    ASSERT_TRUE(prints(QStringLiteral("The recorder manager of Main is lost; "), 1));
    shared->manager = start("manager");
    EXPECT_TRUE(prints(QStringLiteral("The recorder manager of Main is there again."), 1));
    EXPECT_EQ(output.count(u'\n'), 1) << output.toStdString();
    EXPECT_EQ(exitCodeWhenTerminated(), 0);
}

TEST_F(KorvectlWatch, OfRecordsTellsProgramsOfTheSameByEvents)
{
    begin("watch --json");
    ASSERT_TRUE(prints(QStringLiteral("\"event\":\"watching\""), 1)) << errors.toStdString();
    shared->manager->kill();
    ASSERT_TRUE(prints(QStringLiteral("\"event\":\"lost\""), 1));
    shared->manager = start("manager");
    EXPECT_TRUE(prints(QStringLiteral("\"event\":\"watching\""), 2));
    EXPECT_EQ(errors, QString());
    EXPECT_EQ(exitCodeWhenTerminated(), 0);
}

} // namespace
