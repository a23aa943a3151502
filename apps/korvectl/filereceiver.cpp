#include "apps/korvectl/filereceiver.h"

#include "apps/korvectl/failure.h"
#include "apps/korvectl/writewhole.h"

#include <QDeadlineTimer>
#include <QTcpSocket>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvectl
{

namespace
{

/// Until it is closed. Another process may have renamed it since it was opened: then it is not the one at its path.
bool isOurs(const QFile &file, const QString &path)
{
    if (::flock(file.handle(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false; // where files cannot be locked, there is no telling
    struct stat opened = {};
    struct stat there = {};
    return ::fstat(file.handle(), &opened) == 0 &&
           ::lstat(QFile::encodeName(path).constData(), &there) == 0 && opened.st_ino == there.st_ino;
}

} // namespace

FileReceiver::FileReceiver(const Target &target, const QHostAddress &address, const SenderHost &sender)
    : path(target.path), sender(sender), count(target.begin), wanted(target.size)
{
    open(target.begin);
    if (!server.listen(address))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("Nothing can be received here: %1.").arg(server.errorString()));
    connect(&server, &QTcpServer::newConnection, this, &FileReceiver::accept);
}

void FileReceiver::open(quint64 begin)
{
    openOwn();
    if (!isOurs(file, path) || static_cast<quint64>(file.size()) < begin)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 is being written by another export.").arg(path));
    if (!file.resize(static_cast<qint64>(begin)) || !file.seek(static_cast<qint64>(begin)))
        throw Failure(ExitCode::Failed, notWritten());
}

void FileReceiver::openOwn()
{
    // A link, or a pipe that somebody has put here, would lead what comes to another place.
    constexpr mode_t readableForAll = 0666;
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, readableForAll);
    struct stat opened = {};
    if (descriptor >= 0 && (::fstat(descriptor, &opened) != 0 || !S_ISREG(opened.st_mode))) {
        ::close(descriptor);
        throw Failure(ExitCode::Failed, QStringLiteral("%1 is no file.").arg(path));
    }
    if (descriptor < 0 && errno == ELOOP)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 is a link.").arg(path));
    if (descriptor < 0)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 cannot be written: %2.").arg(path, reasonOf(errno)));
    // Unbuffered, so that a full disk is noticed with the bytes that do not fit.
    if (!file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
        throw Failure(ExitCode::Failed, notWritten());
}

void FileReceiver::accept()
{
    while (!socket && server.hasPendingConnections()) {
        QTcpSocket *const caller = server.nextPendingConnection();
        if (sender.is(caller->peerAddress())) {
            socket = caller;
            continue;
        }
        stranger = caller->peerAddress().toString();
        delete caller;
    }
    if (!socket)
        return;
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
        reason = isTooMuch ? QStringLiteral("More has come for %1 than was told.").arg(path) : notWritten();
        socket->abort();
        return;
    }
    count += static_cast<quint64>(bytes.size());
    if (count == wanted)
        file.close();
    Q_EMIT si_received();
}

QString FileReceiver::complaint() const
{
    if (!reason.isEmpty() || socket || stranger.isEmpty())
        return reason;
    return QStringLiteral("For %1, only %2 has connected, which is not the recorder at %3.")
        .arg(path, stranger, sender.text());
}

QString FileReceiver::notWritten() const
{
    return QStringLiteral("%1 cannot be written: %2.").arg(path, file.errorString());
}

void FileReceiver::drain(std::chrono::milliseconds patience)
{
    const int patienceMs = static_cast<int>(patience.count());
    const QDeadlineTimer end(patience);
    while (!socket && count < wanted && server.waitForNewConnection(static_cast<int>(end.remainingTime())))
        accept();
    while (socket && count < wanted && (socket->bytesAvailable() > 0 || socket->waitForReadyRead(patienceMs)))
        read();
    file.close();
}

} // namespace korvectl
