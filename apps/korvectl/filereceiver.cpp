#include "apps/korvectl/filereceiver.h"

#include "apps/korvectl/failure.h"
#include "apps/korvectl/writewhole.h"

#include <QTcpSocket>

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>

namespace korvectl
{

namespace
{

/// Until it is closed. Another process may have renamed it since it was opened: then it is not the one at its path.
bool isOurs(const QFile &file)
{
    if (::flock(file.handle(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false; // where files cannot be locked, there is no telling
    struct stat opened = {};
    struct stat there = {};
    return ::fstat(file.handle(), &opened) == 0 &&
           ::stat(QFile::encodeName(file.fileName()).constData(), &there) == 0 && opened.st_ino == there.st_ino;
}

QString notWritten(const QFile &file)
{
    return QStringLiteral("%1 cannot be written: %2.").arg(file.fileName(), file.errorString());
}

} // namespace

FileReceiver::FileReceiver(const QString &path, quint64 begin, quint64 size, const QHostAddress &address)
    : file(path), count(begin), wanted(size)
{
    open(begin);
    if (!server.listen(address))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("Nothing can be received here: %1.").arg(server.errorString()));
    connect(&server, &QTcpServer::newConnection, this, &FileReceiver::accept);
}

void FileReceiver::open(quint64 begin)
{
    // Unbuffered, so that a full disk is noticed with the bytes that do not fit.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        throw Failure(ExitCode::Failed, notWritten(file));
    if (!isOurs(file) || static_cast<quint64>(file.size()) < begin)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 is being written by another export.").arg(file.fileName()));
    if (!file.resize(static_cast<qint64>(begin)) || !file.seek(static_cast<qint64>(begin)))
        throw Failure(ExitCode::Failed, notWritten(file));
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
    const bool isTooMuch = static_cast<quint64>(bytes.size()) > wanted - count; // of another file than was told
    const bool isKept = !isTooMuch && writeWhole(file, bytes);
    if (!isKept) {
        reason = isTooMuch ? QStringLiteral("More has come for %1 than was told.").arg(file.fileName()) : notWritten(file);
        socket->abort();
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
