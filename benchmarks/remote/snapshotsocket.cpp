#include "benchmarks/remote/snapshotsocket.h"

#include "benchmarks/remote/textvalues.h"

#include <QDataStream>
#include <QTcpSocket>

SnapshotSocket::SnapshotSocket(const QString &address)
{
    for (int number = 0; number < texts::count; ++number)
        values.append({texts::path(number), texts::content(number)});
    listen(QHostAddress(address));
    connect(this, &QTcpServer::newConnection, this, &SnapshotSocket::send);
}

void SnapshotSocket::send()
{
    QTcpSocket *socket = nextPendingConnection();
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QDataStream stream(socket);
    for (const auto &[path, content] : std::as_const(values))
        stream << path << content;
    socket->disconnectFromHost(); // once all is sent
}
