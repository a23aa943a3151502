#pragma once

#include <QProcess>

/// A service in a process of its own, that dies with this object, and with this program.
///
/// Needs a line on its standard output that begins with "ready" when it answers, or with "standing" when it waits for
/// another to go.
class ServiceProcess
{
public:
    /// Waits until it is ready or stands by. Throws std::runtime_error when it does not become so.
    ServiceProcess(const QString &program, const QStringList &arguments);
    ServiceProcess(const ServiceProcess &) = delete;
    ~ServiceProcess();

    /// What it printed then, in words.
    const QStringList &readyWords() const { return words; }
    qint64 processId() const { return process.processId(); }
    bool isRunning() const { return process.state() != QProcess::NotRunning; }

    /// As kill -9; returns when it is gone.
    void kill();
    /// Asks it to end; returns its exit code, -1 when it does not end by itself.
    int end();
    /// As if its machine stood still; returns when it does.
    void suspend();
    void resume();
    /// One line to its standard input.
    void tell(const QByteArray &line);
    /// The next line that it prints; empty, when none comes for long.
    QString readLine();

private:
    class MortalProcess : public QProcess
    {
    protected:
        void setupChildProcess() override;
    };

    MortalProcess process;
    QStringList words;
};
