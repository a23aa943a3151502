#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>

/// `korvectl` as a process, told to stay, and the events that it prints as JSON. It is killed with this object.
class FollowClient
{
public:
    /// Runs `records --follow --json`.
    explicit FollowClient(const QStringList &furtherArguments);
    /// Runs @p command, with `--json`.
    FollowClient(const QStringList &command, const QStringList &furtherArguments);
    ~FollowClient();

    /// Passes the events up to one of that kind. False when none comes for long.
    bool waitForEvent(const char *kind);
    bool waitForAnyEvent();
    /// Passes its traces up to one with these words. False when none comes for long.
    bool waitForTrace(const char *words);
    /// Whether one has come that has not been passed yet.
    bool hasEvent();
    const QJsonObject &lastEvent() const { return event; }

    /// Sends it that signal. As waitForEnd().
    int end(int signal);
    /// Its exit code; -1 when it does not end for long, or not by itself.
    int waitForEnd();
    QString errors() { return QString::fromUtf8(process.readAllStandardError()); }

private:
    QProcess process;
    QJsonObject event;
};
