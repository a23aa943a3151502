#include "tests/installation/manager/exportingrecorder.h"

#include <QUrl>
#include <QUrlQuery>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr CORBA::ULong transferDone = 3;
constexpr CORBA::ULong transferFailed = 4;

int connectTo(const QUrl &url)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(url.port()));
    ::inet_pton(AF_INET, url.host().toLatin1().constData(), &address.sin_addr);
    const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
    if (::connect(connection, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
        return connection;
    ::close(connection);
    throw TQ_KORVE::exKorve(TQ_KORVE::ekCONNECTION_FAILURE, "nobody listens there");
}

bool sendAll(int connection, const std::string &bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

void waitUntilClosed(int connection)
{
    char byte = 0;
    while (::recv(connection, &byte, 1, 0) > 0) {
    }
}

} // namespace

ExportingRecorder::~ExportingRecorder()
{
    for (std::thread &sender : senders)
        sender.join();
}

TQ_KORVE::struMETA_DATA *ExportingRecorder::getMetaData(Text recordId)
{
    if (recordId != std::string("R1"))
        throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_RECORD_ID, "there is no such record");
    TQ_KORVE::struMETA_DATA_var metaData = new TQ_KORVE::struMETA_DATA(); // zero, where nothing is said
    metaData->recordID = recordId;
    metaData->size = files.begin()->second.size();
    return metaData._retn();
}

TQ_KORVE::seqMETA_DATA *ExportingRecorder::listAllRecordsOnArchDev(Text place)
{
    if (place == std::string("sending:R1") && tellsTransfers)
        return transfers();
    questions += place == std::string("sending:R1");
    if (place != std::string("export:R1"))
        throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_RECORD_ID, "there is no such record");
    TQ_KORVE::seqMETA_DATA_var list = new TQ_KORVE::seqMETA_DATA;
    list->length(static_cast<CORBA::ULong>(files.size()));
    CORBA::ULong position = 0;
    for (const auto &[name, bytes] : files) {
        TQ_KORVE::struMETA_DATA &entry = list[position++];
        entry = TQ_KORVE::struMETA_DATA(); // a sequence leaves numbers as they are
        entry.recordID = name.c_str();
        entry.size = bytes.size();
    }
    return list._retn();
}

TQ_KORVE::seqMETA_DATA *ExportingRecorder::transfers()
{
    TQ_KORVE::seqMETA_DATA_var list = new TQ_KORVE::seqMETA_DATA;
    const std::scoped_lock lock(senderMutex);
    list->length(sending.empty() ? 0 : 1);
    if (!sending.empty()) {
        list[0u] = TQ_KORVE::struMETA_DATA();
        list[0u].recordID = sending.c_str();
    }
    ++questions;
    return list._retn();
}

void ExportingRecorder::copyRecordToArchDevEx(Text, Text destination, Receiver receiver)
{
    const QUrl url(QString::fromUtf8(destination));
    const QUrlQuery query(url);
    const std::string &bytes = files.at(url.path(QUrl::FullyDecoded).mid(1).toStdString());
    if (query.queryItemValue(QStringLiteral("size")).toULongLong() != bytes.size())
        throw TQ_KORVE::exKorve(TQ_KORVE::ekRECORD_ACCESS_FAILED, "the record has changed");
    const std::string rest = bytes.substr(query.queryItemValue(QStringLiteral("offset")).toULongLong());
    const int connection = connectTo(url);
    const std::scoped_lock lock(senderMutex);
    sending = destination;
    senders.emplace_back([this, connection, rest,
                          hearer = TQ_KORVE_IT::IF_Korve_IT_var(TQ_KORVE_IT::IF_Korve_IT::_duplicate(receiver))] {
        send(connection, rest, hearer.in());
    });
}

void ExportingRecorder::send(int connection, const std::string &bytes, Receiver receiver)
{
    bool isSent = false;
    if (hangs)
        waitUntilClosed(connection);
    else
        isSent = sendAll(connection, bytes);
    ::close(connection);
    {
        const std::scoped_lock lock(senderMutex);
        sending.clear();
    }
    if (!tellsEnds)
        return;
    TQ_KORVE_IT::struNotification notification{};
    notification.notification = isSent ? transferDone : transferFailed;
    notification.recordId = "R1";
    notification.text = isSent ? "" : "the connection has been closed";
    try {
        receiver->processNotification(notification);
    } catch (const CORBA::Exception &) { // the manager has given the transfer up
    }
}
