#pragma once

#include <QTcpServer>

/// Sends the texts of textvalues.h, as QDataStream writes paths and contents, to each that connects, and closes.
class SnapshotSocket : public QTcpServer
{
public:
    explicit SnapshotSocket(const QString &address);

private:
    void send();

    QVector<QPair<QString, QString>> values;
};
