#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/file.h>

using testing::HasSubstr;

namespace
{

/// `./korve up` and `down` with an address and a state folder of their own. What is up goes down with the test.
class UpAndDown : public testing::Test
{
protected:
    struct Run {
        int exitCode;
        std::string output;
    };

    ~UpAndDown() override { korve("down"); }

    Run korve(const char *command) const
    {
        return run(QStringLiteral(KORVE_SCRIPT), {QLatin1String(command)}, folder.path());
    }
    Run doctor() const { return run(QStringLiteral(KORVECTL_PROGRAM), {QStringLiteral("doctor")}, folder.path()); }
    QString pidFile() const { return folder.filePath(QStringLiteral("korve/installation.pid")); }
    /// Waits until no process holds the file any more: one that was killed does so for a moment.
    bool isLeft() const
    {
        QFile file(pidFile());
        const auto canBeHeld = [&] { return ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0; };
        return file.open(QIODevice::ReadOnly) && QTest::qWaitFor(canBeHeld, patienceMs);
    }
    /// 0 when there is none.
    pid_t keptProcess() const
    {
        QFile file(pidFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    }
    void keepProcess(const QByteArray &id) const
    {
        QFile file(pidFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(id) == id.size());
    }

    Run run(const QString &program, const QStringList &arguments, const QString &stateFolder) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_STATE_HOME"), stateFolder);
        environment.insert(QStringLiteral("KORVE_ADDRESS"), lease.address());
        environment.insert(QStringLiteral("KORVE_CCO"), lease.address());
        environment.insert(QStringLiteral("KORVE_BUILD"), QStringLiteral(KORVE_BUILD_FOLDER));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForFinished(patienceMs))
            throw std::runtime_error("it does not end: " + program.toStdString());
        return {process.exitCode(), process.readAll().toStdString()};
    }

    const LoopbackLease lease;
    const QTemporaryDir folder;
};

TEST_F(UpAndDown, RunTheServicesOfAHost)
{
    const Run up = korve("up");
    ASSERT_EQ(up.exitCode, 0) << up.output;
    EXPECT_THAT(up.output, HasSubstr("ready manager " + lease.address().toStdString() + ":8004"));
    EXPECT_THAT(up.output, HasSubstr(pidFile().toStdString()));
    EXPECT_GT(keptProcess(), 0);
    const Run examined = doctor();
    EXPECT_EQ(examined.exitCode, 0) << examined.output;

    const Run down = korve("down");
    EXPECT_EQ(down.exitCode, 0) << down.output;
    EXPECT_THAT(down.output, HasSubstr("it has stopped"));
    EXPECT_EQ(keptProcess(), 0);
    EXPECT_EQ(doctor().exitCode, 2);
}

TEST_F(UpAndDown, SayWhenThereIsNothingToDo)
{
    EXPECT_THAT(korve("down").output, HasSubstr("not running"));
    ASSERT_EQ(korve("up").exitCode, 0);
    const pid_t process = keptProcess();
    const Run second = korve("up");
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_THAT(second.output, HasSubstr("running already, as process " + std::to_string(process)));
    EXPECT_EQ(keptProcess(), process);
}

TEST_F(UpAndDown, AreNotFooledByWhatAKilledOneLeft)
{
    ASSERT_EQ(korve("up").exitCode, 0);
    const pid_t killed = keptProcess();
    ::kill(killed, SIGKILL);
    ASSERT_TRUE(isLeft());
    EXPECT_THAT(korve("down").output, HasSubstr("not running"));
    QProcess stranger; // a number may be another process's by now
    stranger.start(QStringLiteral("cat"), QStringList());
    ASSERT_TRUE(stranger.waitForStarted(patienceMs));
    keepProcess(QByteArray::number(stranger.processId()) + '\n');
    EXPECT_THAT(korve("down").output, HasSubstr("not running"));
    keepProcess(QByteArray::number(stranger.processId()) + '\n');
    EXPECT_EQ(korve("up").exitCode, 0);
    EXPECT_NE(keptProcess(), stranger.processId());
    EXPECT_EQ(korve("down").exitCode, 0);
    EXPECT_EQ(stranger.state(), QProcess::Running);
    stranger.closeWriteChannel();
    EXPECT_TRUE(stranger.waitForFinished(patienceMs));
}

TEST_F(UpAndDown, SayWhyTheServicesDoNotStart)
{
    ASSERT_EQ(korve("up").exitCode, 0);
    const QTemporaryDir otherFolder;
    const Run second = run(QStringLiteral(KORVE_SCRIPT), {QStringLiteral("up")}, otherFolder.path());
    EXPECT_NE(second.exitCode, 0);
    EXPECT_THAT(second.output, HasSubstr("the services have ended: "));
    EXPECT_EQ(doctor().exitCode, 0); // the first ones go on
}

} // namespace
