#pragma once

#include "apps/korvectl/senderhost.h"

#include <QFile>
#include <QTcpServer>

#include <chrono>

class QTcpSocket;

namespace korvectl
{

/// A socket to which a device sends one file, or the rest of it.
///
/// One at a time for a file, in all processes. What is at the path and is no file of its own, such as a link, is refused.
/// Thread: main; the event loop takes what comes.  Errors: the constructor throws Failure; later ones end the reception,
/// and what is missing is missing.
class FileReceiver : public QObject
{
    Q_OBJECT
public:
    /// Where a file is to go: behind the first @p begin bytes of what is at @p path, which is to have @p size.
    struct Target {
        QString path;
        quint64 begin;
        quint64 size;
    };

    /// Listens at @p address, to nobody but @p sender.
    FileReceiver(const Target &target, const QHostAddress &address, const SenderHost &sender);

    quint16 port() const { return server.serverPort(); }
    quint64 received() const { return count; }
    quint64 size() const { return wanted; }
    /// Why no more is taken; empty as long as nothing is wrong here.
    QString complaint() const;
    /// Waits for what is still on its way, at most so long for each part of it.
    void drain(std::chrono::milliseconds patience);

Q_SIGNALS:
    void si_received();

private:
    void open(quint64 begin);
    void openOwn();
    void accept();
    void read();
    QString notWritten() const;

    const QString path;
    QFile file; ///< which forgets its name when it is opened by a descriptor
    const SenderHost sender;
    QTcpServer server;
    QTcpSocket *socket = nullptr; ///< the server's
    quint64 count;
    const quint64 wanted;
    QString reason;
    QString stranger; ///< the address of one who connected and was not the sender
};

} // namespace korvectl
