#include "tests/faults/client.h"

#include "idl/korve.hh"
#include "objectmodel/bookmarkentry.h"
#include "objectmodel/korve_recorddata.h"
#include "orbconnection/orbhandler.h"

using CorbaCommon::OrbHandler;
using namespace KorveGUI;
using KORVE_XML::KORVE_RecordData;

namespace
{

const QString device = QStringLiteral("REC1");
const QString words = QStringLiteral("words");
constexpr unsigned long long recordBytes = 2000; // see FaultyInstallation::importRecord()

std::string told(unsigned long number)
{
    return std::to_string(number);
}

QVector<KORVE_XML::BookmarkEntry> oneBookmark()
{
    KORVE_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(1);
    bookmark.SetBookmark(words);
    return {bookmark};
}

std::string toldTruth(bool isTrue)
{
    return isTrue ? "true" : "false";
}

} // namespace

Client::Client(const QString &address, const std::string &recordId)
    : address(address), record(QString::fromStdString(recordId)), station(std::make_shared<Station>(address)),
      handler(std::make_shared<KorveGuiToServerCorbaHandler>(QStringLiteral("Main"), station, address)),
      channel(address, [this] { return handler->GetKorveInterface(); })
{
    OrbHandler &orb = OrbHandler::Instance();
    exporter.id = "REC1@" + recordId + "@a@b@c";
    const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(&exporter);
    exporterReference = exporter._this();
    station->Initialize(QStringLiteral("Main"));
    handler->ReconnectToServer();
    makeHandlers();
}

Client::~Client()
{
    const PortableServer::POA_ptr poa = OrbHandler::Instance().rootPoa();
    const PortableServer::ObjectId_var id = poa->servant_to_id(&exporter);
    poa->deactivate_object(id);
}

void Client::makeHandlers()
{
    admin = std::make_unique<GuiToServerAdminCorbaHandler>(handler);
    replay = std::make_unique<GuiToServerReplayCorbaHandler>(handler);
    exporting = std::make_unique<GuiToServerExportCorbaHandler>(handler);
}

std::string Client::run(const std::string &command)
{
    return commands().at(command)(*this);
}

const std::map<std::string, Client::Command> &Client::commands()
{
    static const std::map<std::string, Command> all = [] {
        std::map<std::string, Command> each = recordCommands();
        for (const auto &more : {deviceCommands(), mistakenCommands(), channelCommands(), exportCommands(), connectionCommands(),
                                 replayCommands("", &Client::replayOfDevice),
                                 replayCommands("OfNobody", &Client::replayOfNobody)})
            each.insert(more.begin(), more.end());
        for (const auto &[name, command] : TestChannel::commands())
            each[name] = [&command = command](Client &c) { return command(c.channel); };
        return each;
    }();
    return all;
}

const std::map<std::string, Client::Command> &Client::recordCommands()
{
    static const std::map<std::string, Command> all{
        {"SaveBookmarksToKorve", [](Client &c) { return told(c.admin->SaveBookmarksToKorve(device, c.record, oneBookmark())); }},
        {"DeleteBookmarksFromKorve",
         [](Client &c) { return told(c.admin->DeleteBookmarksFromKorve(device, c.record, oneBookmark())); }},
        {"addBookmarkEntries", [](Client &c) { return told(c.admin->addBookmarkEntries(device, c.record, oneBookmark())); }},
        {"RequestRecordDataDetail", [](Client &c) { return told(c.admin->requestRecordDataDetail(device, c.record)); }},
        {"SaveHistoryEntryToKorve",
         [](Client &c) { return told(c.admin->SaveHistoryEntryToKorve(device, c.record, words)); }},
        {"DeleteHistoryEntryFromKorve",
         [](Client &c) { return told(c.admin->DeleteHistoryEntryFromKorve(device, c.record, 1)); }},
        {"addHistory", [](Client &c) { return told(c.admin->addHistory(device, c.record, words)); }},
        {"removeHistoryEntry", [](Client &c) { return told(c.admin->removeHistoryEntry(device, c.record, 1)); }},
        {"CopyRecord",
         [](Client &c) {
             QString newId;
             return told(c.admin->CopyRecord(device, c.record, newId, new TQ_KRV::seqFILE_PART, words));
         }},
        {"copyRecord", [](Client &c) { return told(c.admin->copyRecord(device, c.record, 0, 8, words)); }},
        {"SetRecordComment", [](Client &c) { return told(c.admin->SetRecordComment(device, c.record, words)); }},
        {"SetRecordDeletableFlag",
         [](Client &c) { return told(c.admin->SetRecordDeletableFlag(device, c.record, true)); }},
        {"getRecord",
         [](Client &c) {
             KORVE_RecordData data;
             return told(c.admin->getRecord(device, c.record, data));
         }},
    };
    return all;
}

const std::map<std::string, Client::Command> &Client::deviceCommands()
{
    static const std::map<std::string, Command> all{
        {"overviewSpectrumStreamed",
         [](Client &c) {
             return told(c.admin->overviewSpectrumStreamed(device, c.record, 0, 8, 1, 16,
                                                           KorveDataTypes::eFFT_Window::Hanning,
                                                           QStringLiteral("127.0.0.1"), 9));
         }},
        {"GetDeviceTime",
         [](Client &c) {
             unsigned long long time = 0;
             bool isSynchronized = false;
             return told(c.admin->GetDeviceTime(device, time, isSynchronized));
         }},
        {"SetDeviceTime", [](Client &c) { return told(c.admin->SetDeviceTime(device, 1)); }},
        {"restorePelinFilegroup",
         [](Client &c) { return toldTruth(c.admin->restorePelinFilegroup(device, c.record, words)); }},
        {"pelinConnectionParameter",
         [](Client &c) {
             QString host;
             unsigned short port = 0;
             return toldTruth(c.admin->pelinConnectionParameter(host, port));
         }},
    };
    return all;
}

const std::map<std::string, Client::Command> &Client::mistakenCommands()
{
    static const QString nobody = QStringLiteral("nobody");
    const auto get = [](Client &c, const QString &deviceId, const QString &recordId) {
        KORVE_RecordData data;
        return told(c.admin->getRecord(deviceId, recordId, data));
    };
    const auto formatOf = [](Client &c, const QString &deviceId, const QString &recordId) {
        QString error;
        return (c.exporting->recordDataFormat(deviceId, recordId, error) + error).toStdString();
    };
    static const std::map<std::string, Command> all{
        {"getUnknownRecord", [=](Client &c) { return get(c, device, nobody); }},
        {"getRecordOfUnknownDevice", [=](Client &c) { return get(c, nobody, c.record); }},
        {"formatOfUnknownRecord", [=](Client &c) { return formatOf(c, device, nobody); }},
        {"formatOfUnknownDevice", [=](Client &c) { return formatOf(c, nobody, c.record); }},
        {"commentUnknownRecord", [](Client &c) { return told(c.admin->SetRecordComment(device, nobody, words)); }},
        {"commentOnUnknownDevice", [](Client &c) { return told(c.admin->SetRecordComment(nobody, c.record, words)); }},
        {"deleteUnknownRecord", [](Client &c) { return toldTruth(c.exporting->deleteRecord(device, nobody)); }},
        {"replayUnknownRecord",
         [](Client &c) {
             return told(c.replayOfDevice().StartReplay(device, nobody, KORVE_RecordData::HF_20k, 0, 8, 1));
         }},
        {"replayOnUnknownDevice",
         [](Client &c) {
             return told(c.replayOfDevice().StartReplay(nobody, c.record, KORVE_RecordData::HF_20k, 0, 8, 1));
         }},
        {"stopOnUnknownDevice", [](Client &c) { return told(c.replayOfDevice().StopReplay(nobody, c.record)); }},
    };
    return all;
}

GuiToServerReplayCorbaHandler &Client::replayOfDevice()
{
    replay->Initialize(device);
    return *replay;
}

GuiToServerReplayCorbaHandler &Client::replayOfNobody()
{
    replay = std::make_unique<GuiToServerReplayCorbaHandler>(handler);
    return *replay;
}

std::string Client::startReplay(unsigned long long begin, unsigned long long end, unsigned long count)
{
    return told(replayOfDevice().StartReplay(device, record, KORVE_RecordData::HF_20k, begin, end, count));
}

std::string Client::registerChannel(bool isForReplay)
{
    const TQ_KRV::IF_KRV_c_KRV_var manager = handler->GetKorveInterface();
    CORBA::String_var id;
    const TQ_KRV::IF_KRV_c_Chan_var channel = manager->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::eDATARATE_CLASS(), TQ_KRV::eDATA_FORMAT(), !isForReplay, isForReplay,
        "C1", "REC1", TQ_KRV::TCP_IF, "127.0.0.1:9", id.out());
    return toldTruth(!CORBA::is_nil(channel));
}

void Client::linkByAnother()
{
    const CORBA::Object_var found = OrbHandler::Instance().ResolveInterfaceViaCCO(
        "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveRecorder/REC1/IF_Control", address);
    const TQ_KORVE::IF_Control_var recorder = TQ_KORVE::IF_Control::_narrow(found);
    const TQ_KORVE::IF_ReplaySession_var session =
        recorder->getReplaySessionById(record.toUtf8(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    const LLDCmodule::LLDC_Interface_Transmitter_var link = LLDCmodule::LLDC_Interface_Transmitter::_narrow(session);
    link->waitForConnectionOnIf({LLDCmodule::ifTCP, 0, 0, 0}, 0); // it listens
}

std::map<std::string, Client::Command> Client::replayCommands(const std::string &ending,
                                                              GuiToServerReplayCorbaHandler &(Client::*handler)())
{
    const auto start = [](GuiToServerReplayCorbaHandler &replay, const QString &record) {
        return replay.StartReplay(device, record, KORVE_RecordData::HF_20k, 0, 8, 1);
    };
    const auto startByDatagrams = [](GuiToServerReplayCorbaHandler &replay, const QString &record) {
        return replay.StartReplay(device, record, KORVE_RecordData::HF_20k, 0, 8, 1, KORVE_XML::NetIfParams::UDP_IF);
    };
    return {
        {"StartReplay" + ending, [=](Client &c) { return told(start((c.*handler)(), c.record)); }},
        {"StartReplayReceivers" + ending, [=](Client &c) { return told(startByDatagrams((c.*handler)(), c.record)); }},
        {"PauseReplay" + ending, [=](Client &c) { return told((c.*handler)().PauseReplay(device, c.record)); }},
        {"ContinueReplay" + ending, [=](Client &c) { return told((c.*handler)().ContinueReplay(device, c.record)); }},
        {"StopReplay" + ending, [=](Client &c) { return told((c.*handler)().StopReplay(device, c.record)); }},
    };
}

const std::map<std::string, Client::Command> &Client::channelCommands()
{
    static const std::map<std::string, Command> all{
        {"StartReplayOfNothing", [](Client &c) { return c.startReplay(0, 0); }},
        {"StartReplayAtItsEnd", [](Client &c) { return c.startReplay(8, 8); }},
        {"StartReplayBackwards", [](Client &c) { return c.startReplay(8, 4); }},
        {"StartReplayByXg",
         [](Client &c) {
             return told(c.replayOfDevice().StartReplay(device, c.record, KORVE_RecordData::HF_20k, 0, 8, 1,
                                                        KORVE_XML::NetIfParams::TQXG_IF));
         }},
        {"StartReplayForEver", [](Client &c) { return c.startReplay(0, recordBytes, 0); }},
        {"linkByAnother", [](Client &c) { return c.linkByAnother(), toldTruth(true); }},
        {"registerChannelForRecording", [](Client &c) { return c.registerChannel(false); }},
        {"registerChannel", [](Client &c) { return c.registerChannel(true); }},
    };
    return all;
}

const std::map<std::string, Client::Command> &Client::exportCommands()
{
    static const std::map<std::string, Command> all{
        {"getAllRecords",
         [](Client &c) {
             QVector<KORVE_RecordData> records;
             return told(c.handler->getAllRecords(device, records));
         }},
        {"deviceID", [](Client &c) { return c.exporting->deviceID(QStringLiteral("192.0.2.1")).toStdString(); }},
        {"exportRecord", [](Client &c) { return toldTruth(c.exporting->exportRecord(c.exporterReference)); }},
        {"cancelExport", [](Client &c) { return toldTruth(c.exporting->cancelExport(QStringLiteral("E1"))); }},
        {"deleteRecord", [](Client &c) { return toldTruth(c.exporting->deleteRecord(device, c.record)); }},
        {"recordDataFormat",
         [](Client &c) {
             QString error;
             const QString format = c.exporting->recordDataFormat(device, c.record, error);
             return (format + error).toStdString();
         }},
    };
    return all;
}

const std::map<std::string, Client::Command> &Client::connectionCommands()
{
    static const std::map<std::string, Command> all{
        {"disconnect",
         [](Client &c) {
             c.handler->Shutdown();
             return toldTruth(c.handler->IsConnected());
         }},
        {"reconnect", [](Client &c) { return toldTruth(c.handler->ReconnectToServer()); }},
        {"forget",
         [](Client &c) {
             c.makeHandlers();
             return toldTruth(true);
         }},
        // A command whose handler has fetched nothing yet, or whose connection was made again behind its back.
        {"firstAddHistory",
         [](Client &c) {
             c.handler->Shutdown();
             c.handler->ReconnectToServer();
             c.makeHandlers();
             return told(c.admin->addHistory(device, c.record, words));
         }},
        {"reconnectedAddHistory",
         [](Client &c) {
             c.handler->Shutdown();
             c.handler->ReconnectToServer();
             return told(c.admin->addHistory(device, c.record, words));
         }},
    };
    return all;
}
