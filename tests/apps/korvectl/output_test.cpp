#include "tests/apps/korvectl/korvectlfixture.h"

#include <QProcess>

#include <unistd.h>

namespace
{

constexpr int patienceMs = 30000;

/// Its standard output is a pipe that nobody reads any more.
class Unread : public QProcess
{
public:
    Unread()
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            throw std::runtime_error("no pipe");
        ::close(ends[0]);
        unreadEnd = ends[1];
    }
    ~Unread() override { ::close(unreadEnd); }

private:
    void setupChildProcess() override { ::dup2(unreadEnd, STDOUT_FILENO); }

    int unreadEnd;
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
        Unread process;
        EXPECT_EQ(exitCodeOf(process, line), 0) << line;
        EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()), QString()) << line;
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
