#pragma once

#include <QProcess>

/// A service in a process of its own, that dies with this object, and with this program.
///
/// Needs a line that begins with "ready" on its standard output when it answers.
class ServiceProcess
{
public:
    /// Waits until it is ready. Throws std::runtime_error when it does not become so.
    ServiceProcess(const QString &program, const QStringList &arguments);
    ServiceProcess(const ServiceProcess &) = delete;
    ~ServiceProcess();

    /// What it printed when it was ready, in words.
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
