#include "tests/support/waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

using testing::HasSubstr;
using testing::Not;

namespace
{

/// The demonstration with a folder for temporary files of its own, whose name its processes have in their environment.
class Demonstration : public testing::Test
{
protected:
    Demonstration()
    {
        std::signal(SIGINT, SIG_DFL); // who is started with it ignored cannot be interrupted
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), folder.path());
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
    }

    void start(const QString &buildFolder)
    {
        const QDir demonstration(QStringLiteral(DEMONSTRATION));
        process.start(QStringLiteral("python3"),
                      {QStringLiteral("-B"), demonstration.filePath(QStringLiteral("alone.py")),
                       demonstration.filePath(QStringLiteral("demonstrate.sh")), buildFolder});
        ASSERT_TRUE(process.waitForStarted(patienceMs));
    }
    void awaitOutput(const QByteArray &text)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!output.contains(text)) {
            ASSERT_LT(elapsed.elapsed(), patienceMs) << output.toStdString();
            ASSERT_TRUE(process.waitForReadyRead(patienceMs)) << output.toStdString();
            output += process.readAll();
        }
    }
    int exitCode()
    {
        EXPECT_TRUE(process.waitForFinished(patienceMs));
        output += process.readAll();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return process.exitCode();
    }
    /// The temporary files and the processes that are there, by their names.
    QStringList left() const
    {
        QStringList found = QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        const QStringList numbers = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
        for (const QString &number : numbers)
            if (contents(number, "environ").contains("TMPDIR=" + folder.path().toUtf8()))
                found << QString::fromUtf8(contents(number, "cmdline").replace('\0', ' '));
        return found;
    }

    QByteArray output;
    QProcess process;

private:
    static QByteArray contents(const QString &number, const char *name)
    {
        QFile file(QStringLiteral("/proc/%1/%2").arg(number, QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray(); // it may have ended meanwhile
    }

    const QTemporaryDir folder;
};

TEST_F(Demonstration, ShowsAllOfItAndLeavesNothing)
{
    start(QStringLiteral(KORVE_BUILD_FOLDER));
    ASSERT_NO_FATAL_FAILURE(awaitOutput("2 devices"));
    EXPECT_THAT(left(), testing::SizeIs(testing::Ge(6))); // so what is left would be seen
    EXPECT_EQ(exitCode(), 0) << output.toStdString();
    EXPECT_THAT(output.toStdString(), HasSubstr("all of it is stopped"));
    EXPECT_EQ(left(), QStringList());
}

TEST_F(Demonstration, LeavesNothingWhenServicesDoNotStart)
{
    const QTemporaryDir build; // with nothing in it
    start(build.path());
    EXPECT_NE(exitCode(), 0);
    EXPECT_THAT(output.toStdString(), HasSubstr("korve demo: "));
    EXPECT_THAT(output.toStdString(), Not(HasSubstr("all of it is stopped")));
    EXPECT_EQ(left(), QStringList());
}

TEST_F(Demonstration, LeavesNothingWhenACommandFails)
{
    const QTemporaryDir build;
    const QDir real(QStringLiteral(KORVE_BUILD_FOLDER));
    for (const char *name : {"docs", "installation"})
        ASSERT_TRUE(QFile::link(real.filePath(QLatin1String(name)), build.filePath(QLatin1String(name))));
    ASSERT_TRUE(QDir(build.path()).mkpath(QStringLiteral("apps/korvectl")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/bin/false"), build.filePath(QStringLiteral("apps/korvectl/korvectl"))));
    start(build.path());
    EXPECT_EQ(exitCode(), 1);
    EXPECT_THAT(output.toStdString(), HasSubstr("korve demo: the client did not list 2 devices"));
    EXPECT_EQ(left(), QStringList());
}

struct InterruptionCase {
    const char *name;
    const char *after;
    int signal;
};

class InterruptedDemonstration : public Demonstration, public testing::WithParamInterface<InterruptionCase>
{
};

TEST_P(InterruptedDemonstration, LeavesNothing)
{
    start(QStringLiteral(KORVE_BUILD_FOLDER));
    ASSERT_NO_FATAL_FAILURE(awaitOutput(GetParam().after));
    ASSERT_GT(process.processId(), 0); // 0 would be this process and those beside it
    ::kill(static_cast<pid_t>(process.processId()), GetParam().signal);
    EXPECT_EQ(exitCode(), 128 + GetParam().signal) << output.toStdString();
    EXPECT_EQ(left(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(Moments, InterruptedDemonstration,
                         testing::Values(InterruptionCase{"ServicesStart", "\neast ", SIGINT},
                                         InterruptionCase{"FilesAreTakenIn", ".wav: ", SIGTERM},
                                         InterruptionCase{"ARecordIsReplayed", "is replayed to", SIGINT}),
                         [](const auto &info) { return info.param.name; });

} // namespace
