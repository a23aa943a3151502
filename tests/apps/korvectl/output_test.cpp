#include "tests/apps/korvectl/korvectlfixture.h"
#include "tests/support/waiting.h"

#include <QProcess>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{

/// Its standard output is a pipe.
class Piped : public QProcess
{
public:
    Piped()
    {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Piped() override
    {
        stopReading();
        ::close(ends[1]);
    }

    /// Waits, bounded, until there is something to read.
    bool hasOutput()
    {
        pollfd end{ends[0], POLLIN, 0};
        return ::poll(&end, 1, patienceMs) == 1;
    }
    void stopReading() { ::close(std::exchange(ends[0], -1)); }

private:
    void setupChildProcess() override { ::dup2(ends[1], STDOUT_FILENO); }

    std::array<int, 2> ends{};
};

/// What becomes of results that cannot be written.
class Output : public KorvectlFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
    }
    static int exitCodeOf(QProcess &process, const char *line)
    {
        process.start(QStringLiteral(KORVECTL_PROGRAM), words(line));
        return process.waitForFinished(patienceMs) && process.exitStatus() == QProcess::NormalExit ? process.exitCode()
                                                                                                   : -1;
    }
    static constexpr std::array lines{"errors 210", "devices", "replay status --json", "watch", "tree watch /KORVE", "--help"};
};

TEST_F(Output, ThatFitsNoDiskIsNoSuccess)
{
    for (const char *const line : lines) {
        QProcess process;
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        EXPECT_EQ(exitCodeOf(process, line), 4) << line;
        EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()),
                  QLatin1String("korvectl: The command was carried out, but its result could not be written: No space "
                                "left on device.\n"))
            << line;
    }
}

TEST_F(Output, ThatNobodyReadsAnyMoreIsEnough)
{
    for (const char *const line : lines) {
        Piped process;
        process.stopReading();
        EXPECT_EQ(exitCodeOf(process, line), 0) << line;
        EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()), QString()) << line;
    }
}

TEST_F(Output, ThatNobodyReadsAnyMoreEndsAWatchBeforeItHasMoreToSay)
{
    for (const char *const line : {"watch", "tree watch /KORVE/Device/REC1/KorveAvailable", "records --follow"}) {
        Piped process;
        process.start(QStringLiteral(KORVECTL_PROGRAM), words(line));
        EXPECT_TRUE(process.hasOutput()) << line;
        process.stopReading();
        EXPECT_TRUE(process.waitForFinished(patienceMs)) << line;
        EXPECT_EQ(process.exitCode(), 0) << line;
    }
}

TEST_F(Output, LeavesTheReasonOfAFailureAlone)
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    EXPECT_EQ(exitCodeOf(process, "records REC9"), 3);
    EXPECT_TRUE(isOneSentence(QString::fromUtf8(process.readAllStandardError())));
}

} // namespace
