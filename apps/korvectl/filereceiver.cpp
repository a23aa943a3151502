#include "apps/korvectl/filereceiver.h"

#include "apps/korvectl/failure.h"

#include <QTcpSocket>

namespace korvectl
{

FileReceiver::FileReceiver(const QString &path, quint64 begin, quint64 size, const QHostAddress &address)
    : file(path), count(begin), wanted(size)
{
    const bool isOpen = file.open(QIODevice::ReadWrite) && file.resize(static_cast<qint64>(begin)) &&
                        file.seek(static_cast<qint64>(begin));
    if (!isOpen)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 cannot be written: %2.").arg(path, file.errorString()));
    if (!server.listen(address))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("Nothing can be received here: %1.").arg(server.errorString()));
    connect(&server, &QTcpServer::newConnection, this, &FileReceiver::accept);
}

void FileReceiver::accept()
{
    if (socket)
        return;
    socket = server.nextPendingConnection();
    server.close(); // one sends, and nobody else
    connect(socket, &QTcpSocket::readyRead, this, &FileReceiver::read);
    read();
}

void FileReceiver::read()
{
    const QByteArray bytes = socket->readAll();
    if (bytes.isEmpty())
        return;
    const bool isTooMuch = static_cast<quint64>(bytes.size()) > wanted - count;
    if (isTooMuch || file.write(bytes) != bytes.size()) {
        socket->abort(); // a full disk, or another file than was told: it stays incomplete
        return;
    }
    count += static_cast<quint64>(bytes.size());
    if (count == wanted)
        file.close();
    Q_EMIT si_received();
}

void FileReceiver::drain(std::chrono::milliseconds patience)
{
    const int patienceMs = static_cast<int>(patience.count());
    if (!socket && count < wanted && server.waitForNewConnection(patienceMs))
        accept();
    while (socket && count < wanted && (socket->bytesAvailable() > 0 || socket->waitForReadyRead(patienceMs)))
        read();
    file.close();
}

} // namespace korvectl
