#pragma once

#include <QFile>
#include <QTcpServer>

#include <chrono>

class QTcpSocket;

namespace korvectl
{

/// A socket to which a device sends one file, or the rest of it.
///
/// One at a time for a file, in all processes.
/// Thread: main; the event loop takes what comes.  Errors: the constructor throws Failure; later ones end the reception,
/// and what is missing is missing.
class FileReceiver : public QObject
{
    Q_OBJECT
public:
    /// Writes behind the first @p begin bytes of the file at @p path, which is to have @p size. Listens at @p address.
    FileReceiver(const QString &path, quint64 begin, quint64 size, const QHostAddress &address);

    quint16 port() const { return server.serverPort(); }
    quint64 received() const { return count; }
    quint64 size() const { return wanted; }
    /// Why no more is taken; empty as long as nothing is wrong here.
    const QString &complaint() const { return reason; }
    /// Waits for what is still on its way, at most so long for each part of it.
    void drain(std::chrono::milliseconds patience);

Q_SIGNALS:
    void si_received();

private:
    void open(quint64 begin);
    void accept();
    void read();

    QFile file;
    QTcpServer server;
    QTcpSocket *socket = nullptr; ///< the server's
    quint64 count;
    const quint64 wanted;
    QString reason;
};

} // namespace korvectl
