#include "tests/installation/manager/wavfile.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/prctl.h>

#include <csignal>

namespace
{

/// The program on an address of its own.
class Program : public QProcess
{
public:
    Program(const QString &address, const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("KORVE_ADDRESS"), address);
        environment.remove(QStringLiteral("KORVE_CCO"));
        setProcessEnvironment(environment);
        start(QStringLiteral(INSTALLATION_PROGRAM), arguments);
    }
    /// Waits, bounded.
    QString nextLine()
    {
        while (!canReadLine() && waitForReadyRead(patienceMs)) {
        }
        return QString::fromUtf8(readLine()).trimmed();
    }
    int exitCodeWhenEnded()
    {
        return waitForFinished(patienceMs) && exitStatus() == QProcess::NormalExit ? exitCode() : -1;
    }

protected:
    void setupChildProcess() override { ::prctl(PR_SET_PDEATHSIG, SIGKILL); }
};

} // namespace

TEST(OneProcess, RunsAllServicesOfAHost)
{
    const LoopbackLease lease;
    const QTemporaryDir folder;
    Program services(lease.address(), {QStringLiteral("--state"), folder.filePath(QStringLiteral("state"))});
    EXPECT_EQ(services.nextLine(), QStringLiteral("ready cco %1:8003").arg(lease.address()));
    EXPECT_TRUE(services.nextLine().startsWith(QStringLiteral("ready recorder %1:").arg(lease.address())));
    EXPECT_EQ(services.nextLine(), QStringLiteral("ready manager %1:8004").arg(lease.address()));

    const QString file = writeWavFile(folder.path(), QStringLiteral("a.wav"), 10);
    Program import(lease.address(), {QStringLiteral("import"), QStringLiteral("KORVE-") + lease.address(), file});
    EXPECT_EQ(import.exitCodeWhenEnded(), 0);
    services.terminate();
    EXPECT_EQ(services.exitCodeWhenEnded(), 0);
}
