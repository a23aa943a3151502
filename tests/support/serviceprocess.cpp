#include "tests/support/serviceprocess.h"

#include "tests/support/waiting.h"

#include <csignal>
#include <stdexcept>

#include <sys/prctl.h>
#include <sys/wait.h>

void ServiceProcess::MortalProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

ServiceProcess::ServiceProcess(const QString &program, const QStringList &arguments)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    while (words.value(0) != QLatin1String("ready") && words.value(0) != QLatin1String("standing")) {
        while (!process.canReadLine())
            if (!process.waitForReadyRead(patienceMs))
                throw std::runtime_error("not ready: " + program.toStdString());
        words = QString::fromUtf8(process.readLine()).trimmed().split(u' ');
    }
}

ServiceProcess::~ServiceProcess()
{
    kill();
}

void ServiceProcess::kill()
{
    process.kill();
    process.waitForFinished();
}

int ServiceProcess::end()
{
    process.terminate();
    const bool hasEnded = process.waitForFinished(patienceMs) && process.exitStatus() == QProcess::NormalExit;
    return hasEnded ? process.exitCode() : -1;
}

void ServiceProcess::suspend()
{
    const auto id = static_cast<pid_t>(process.processId());
    ::kill(id, SIGSTOP);
    siginfo_t change{};
    waitid(P_PID, static_cast<id_t>(id), &change, WSTOPPED | WNOWAIT); // the signal alone only asks for it
}

void ServiceProcess::resume()
{
    ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
}

void ServiceProcess::tell(const QByteArray &line)
{
    process.write(line + '\n');
    process.waitForBytesWritten();
}

QString ServiceProcess::readLine()
{
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patienceMs))
            return QString();
    return QString::fromUtf8(process.readLine()).trimmed();
}
