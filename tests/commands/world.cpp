#include "tests/commands/world.h"

#include "tests/support/waiting.h"

#include "korvebase/korveconfiguration.h"
#include "orbconnection/orbhandler.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest/QTest>

#include <algorithm>
#include <stdexcept>

namespace
{

std::string asciiOf(const TQ_KORVE::wideText &text)
{
    std::string ascii;
    for (CORBA::ULong i = 0; i < text.length(); ++i)
        ascii += static_cast<char>(text[i]);
    return ascii;
}

TQ_KORVE::IF_Control_ptr findRecorder()
{
    const CCO::IF_CCO_c_var names = CorbaCommon::OrbHandler::Instance().centralService(std::chrono::seconds(2));
    const CORBA::Object_var found = names->Resolve("KorveRecorder/REC1/IF_Control", CCO::rtInstallation);
    return TQ_KORVE::IF_Control::_narrow(found);
}

template <typename Sequence, typename Matches> int countIf(const Sequence &sequence, const Matches &matches)
{
    int count = 0;
    for (CORBA::ULong i = 0; i < sequence.length(); ++i)
        count += matches(sequence[i]) ? 1 : 0;
    return count;
}

/// Where a receiver takes all connections: for a record always the same one, so that the manager knows the channel again.
QByteArray addressOfReceiver(const QString &record)
{
    static std::map<QString, QTcpServer> receivers;
    QTcpServer &receiver = receivers[record];
    const QHostAddress host(QString::fromLatin1(qgetenv("KORVE_ADDRESS")));
    if (!receiver.isListening()) {
        QObject::connect(&receiver, &QTcpServer::newConnection, &receiver, [&receiver] {
            while (QTcpSocket *const connection = receiver.nextPendingConnection())
                QObject::connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
        });
        if (!receiver.listen(host))
            throw std::runtime_error("nobody can listen");
    }
    return host.toString().toLatin1() + ':' + QByteArray::number(receiver.serverPort());
}

} // namespace

World::World(const QString &recordId) : record(recordId), recorder(findRecorder()), exporter(new ObservedExporter)
{
    const PortableServer::ObjectId_var id = CorbaCommon::OrbHandler::Instance().rootPoa()->activate_object(exporter);
    connect();
}

World::~World()
{
    const PortableServer::POA_ptr poa = CorbaCommon::OrbHandler::Instance().rootPoa();
    const PortableServer::ObjectId_var id = poa->servant_to_id(exporter);
    poa->deactivate_object(id);
    exporter->_remove_ref();
}

void World::connect()
{
    using namespace KorveGUI;
    data = std::make_shared<KorveCommon::HMIServerConnectionData>(QString());
    data->GetConfiguration()->SetCurrentSubSystem(QStringLiteral("Main"));
    manager = std::make_shared<KorveGuiToServerCorbaHandler>(QString(), data, QString());
    if (!QTest::qWaitFor([this] { return manager->ReconnectToServer(); }, patienceMs))
        throw std::runtime_error("the manager is not found");
    admin = std::make_unique<GuiToServerAdminCorbaHandler>(manager);
    replay = std::make_unique<GuiToServerReplayCorbaHandler>(manager);
    exports = std::make_unique<GuiToServerExportCorbaHandler>(manager);
    if (!admin->Initialize())
        throw std::runtime_error("the manager has no administration");
    replay->Initialize(device);
}

std::string World::recordName() const
{
    const TQ_KORVE::struMETA_DATA_var told = recorder->getMetaData(recordUtf8);
    return asciiOf(told->recordName);
}

bool World::isDeletable() const
{
    const TQ_KORVE::struMETA_DATA_var told = recorder->getMetaData(recordUtf8);
    return told->deletable;
}

int World::historyEntries(const std::string &text) const
{
    const TQ_KORVE::seqHistory_var history = recorder->getHistory(recordUtf8);
    return countIf(history.in(), [&](const auto &entry) { return asciiOf(entry.historyEntry) == text; });
}

int World::historyEntries(quint64 timestampUs) const
{
    const TQ_KORVE::seqHistory_var history = recorder->getHistory(recordUtf8);
    return countIf(history.in(), [&](const auto &entry) { return entry.timestamp == timestampUs; });
}

int World::bookmarks(quint64 timestampUs) const
{
    const TQ_KORVE::seqBookmarks_var all = recorder->getBookmarks(recordUtf8);
    return countIf(all.in(), [&](const auto &bookmark) { return bookmark.timestamp == timestampUs; });
}

int World::records(const std::string &name) const
{
    const TQ_KORVE::seqMETA_DATA_var all = recorder->listAllRecords();
    return countIf(all.in(), [&](const auto &told) { return asciiOf(told.recordName) == name; });
}

int World::records() const
{
    const TQ_KORVE::seqMETA_DATA_var all = recorder->listAllRecords();
    return static_cast<int>(all->length());
}

TQ_KORVE::eRECORD_STATUS World::status() const
{
    const TQ_KORVE::struMETA_DATA_var told = recorder->getMetaData(recordUtf8);
    return static_cast<TQ_KORVE::eRECORD_STATUS>(told->recordStatus);
}

bool World::has(const QByteArray &recordId) const
{
    const TQ_KORVE::seqMETA_DATA_var all = recorder->listAllRecords();
    return countIf(all.in(), [&](const auto &told) { return recordId == told.recordID.in(); }) > 0;
}

void World::openChannel()
{
    if (hasChannel)
        return;
    const QByteArray address = addressOfReceiver(record);
    const QByteArray name = "receiver of " + recordUtf8;
    const TQ_KRV::IF_KRV_c_KRV_var korve = manager->GetKorveInterface();
    CORBA::String_var id;
    const TQ_KRV::IF_KRV_c_Chan_var channel = korve->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfTIMEDOMAIN_DATA, false, true, name, "REC1",
        TQ_KRV::TCP_IF, address, id.out());
    hasChannel = true;
}

unsigned long World::startReplay()
{
    return replay->StartReplay(device, record, KORVE_XML::KORVE_RecordData::VUHF_200k, 0, recordBytes, 0);
}

unsigned long World::startReplay(KORVE_XML::NetIfParams::KorveInterfaceType type)
{
    return replay->StartReplay(device, record, KORVE_XML::KORVE_RecordData::VUHF_200k, 0, recordBytes, 0, type);
}

std::string World::exportId(int round) const
{
    return "REC1@" + record.toStdString() + "@a@b@" + std::to_string(round);
}

bool World::startExport()
{
    const TQ_KRV::IF_ExportCallback_var reference = exporter->_this();
    return exports->exportRecord(reference);
}

void World::replayAnew()
{
    recorder->setRecordIdle(recordUtf8);
    if (!QTest::qWaitFor([this] { return startReplay() == 0; }, patienceMs))
        throw std::runtime_error("the record is not replayed: " + std::to_string(startReplay()));
}

quint64 World::deviceTime() const
{
    return recorder->getSystemTime();
}

TQ_KORVE::wideText deviceText(const std::string &ascii)
{
    TQ_KORVE::wideText text;
    text.length(static_cast<CORBA::ULong>(ascii.size()));
    std::copy(ascii.begin(), ascii.end(), text.get_buffer());
    return text;
}
