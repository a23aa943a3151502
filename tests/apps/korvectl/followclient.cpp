#include "tests/apps/korvectl/followclient.h"

#include "tests/support/waiting.h"

#include <QJsonDocument>
#include <QtTest/QTest>

#include <csignal>

FollowClient::FollowClient(const QStringList &furtherArguments)
    : FollowClient({QStringLiteral("records"), QStringLiteral("--follow")}, furtherArguments)
{
}

FollowClient::FollowClient(const QStringList &command, const QStringList &furtherArguments)
{
    process.start(QStringLiteral(KORVECTL_PROGRAM), command + QStringList{QStringLiteral("--json")} + furtherArguments);
}

FollowClient::~FollowClient()
{
    process.kill();
    process.waitForFinished();
}

bool FollowClient::waitForEvent(const char *kind)
{
    while (waitForAnyEvent())
        if (event[QStringLiteral("event")] == QLatin1String(kind))
            return true;
    return false;
}

bool FollowClient::waitForAnyEvent()
{
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patienceMs))
            return false;
    event = QJsonDocument::fromJson(process.readLine()).object();
    return true;
}

bool FollowClient::waitForTrace(const char *words)
{
    const auto hasCome = [&, traces = QByteArray()]() mutable {
        return (traces += process.readAllStandardError()).contains(words);
    };
    return QTest::qWaitFor(hasCome, patienceMs);
}

bool FollowClient::hasEvent()
{
    process.waitForReadyRead(0);
    return process.canReadLine();
}

int FollowClient::end(int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    return waitForEnd();
}

int FollowClient::waitForEnd()
{
    const bool isOver = process.waitForFinished(patienceMs);
    return isOver && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
