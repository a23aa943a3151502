#include "tests/installation/endings/servicecalls.h"

#include "installation/program/import.hh"
#include "tests/installation/recorder/widetext.h"

#include <atomic>

namespace
{

constexpr const char *device = "REC1";

/// Never the same twice in this process.
QString newText()
{
    static std::atomic<int> last = 0;
    return QStringLiteral("text %1").arg(++last);
}

/// A whole record is one section.
QByteArray copyOf(const Installation &to)
{
    TQ_KORVE::seqFILE_PART parts;
    parts.length(1);
    parts[0].firstPosition = 0;
    parts[0].lastPosition = TQ_KORVE::struMETA_DATA_var(to.recorder->getMetaData(to.record))->size;
    return CORBA::String_var(to.recorder->copyRecord(to.record, parts, wide(newText()))).in();
}

void removeRecord(const Installation &from, const char *id)
{
    from.recorder->setDeletableFlagOfRecord(id);
    from.recorder->removeRecord(id);
}

void recordNothing(const Installation &with)
{
    const TQ_KORVE::IF_RecordingSession_var session =
        with.recorder->createRecordingSession(TQ_KORVE::drHF_20k, 0, TQ_KORVE::dfRAW, with.receiver);
    const CORBA::String_var id = session->getId();
    session->endRecordingSession(wide(QString()));
    removeRecord(with, id);
}

void importFile(Installation &into)
{
    const CORBA::Object_var object = into.names->Resolve(recorderPath("IF_Import"), CCO::rtInstallation);
    const KORVE_INSTALLATION::IF_Import_var importer = KORVE_INSTALLATION::IF_Import::_narrow(object);
    if (CORBA::is_nil(importer))
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    const CORBA::String_var id = importer->begin(into.file);
    KORVE_INSTALLATION::struImportState_var state = importer->await(id);
    while (!state->finished)
        state = importer->await(id);
    if (!*state->failure)
        into.records.add(QString::fromUtf8(state->recordId));
}

void sendToNobody(const Installation &from)
{
    const TQ_KORVE::seqMETA_DATA_var files = from.recorder->listAllRecordsOnArchDev("export:" + from.record);
    const TQ_KORVE::struMETA_DATA &file = files.in()[0];
    const QString url = QStringLiteral("tcp://127.0.0.1:9/%1?offset=0&size=%2").arg(file.recordID.in()).arg(file.size);
    from.recorder->copyRecordToArchDev(from.record, url.toLatin1());
}

void replayForAMoment(const Installation &from)
{
    const TQ_KORVE::IF_ReplaySession_var session = from.recorder->getReplaySessionById(from.record, from.receiver);
    session->getReplayInformation();
    session->endReplaySession();
}

QByteArray newChannel(const Installation &at)
{
    CORBA::String_var id;
    const TQ_KRV::IF_KRV_c_Chan_var channel = at.manager->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, newText().toLatin1(), device,
        TQ_KRV::TCP_IF, "127.0.0.1:9", id.out());
    return id.in();
}

} // namespace

QByteArray recorderPath(const char *object)
{
    return QByteArray("CCO/LocalSystem/LocalSubSystem/CentralServices/KorveRecorder/") + device + '/' + object;
}

std::vector<ServiceLoad::Kind> callsOfCentralService(Installation &to)
{
    static constexpr const char *name = "CCO/LocalSystem/LocalSubSystem/CentralServices/Endings/One";
    static constexpr const char *folder = "CCO/LocalSystem/LocalSubSystem/CentralServices/Endings/";
    return {
        {"Register", [&] { to.names->Register(name, to.recorder, 0); }},
        {"Unregister", [&] { CORBA::release(to.names->Unregister(name, 0)); }},
        {"RegisterValues", [&] { to.names->RegisterValues("Endings/Values", CCO::seqString(), 0); }},
        {"Resolve", [&] { CORBA::release(to.names->Resolve(recorderPath("IF_Control"), CCO::rtInstallation)); }},
        {"ResolveValues", [&] { CCO::seqString_var(to.names->ResolveValues(folder, CCO::rtInstallation)); }},
        {"GetSubSystems", [&] { CCO::seqString_var(to.names->GetSubSystems()); }},
        {"IsWorkstationIndicated", [&] { to.names->IsWorkstationIndicated("Main", "nobody"); }},
        {"register_callback",
         [&] { CCO::CBRegistration_var(to.names->register_callback(to.nameCallback, CCO::seqInterest()))->unregister(); }},
    };
}

std::vector<ServiceLoad::Kind> callsOfRecorder(Installation &to)
{
    return {
        {"listAllRecords", [&] { TQ_KORVE::seqMETA_DATA_var(to.recorder->listAllRecordsEx3()); }},
        {"getActiveSessions", [&] { TQ_KORVE::seqMETA_DATA_var(to.recorder->getActiveSessionsEx3()); }},
        {"getMassStoreStatus", [&] { TQ_KORVE::struMASS_STORE_STATUS_var(to.recorder->getMassStoreStatus()); }},
        {"getOverviewSpectrum",
         [&] {
             TQ_KORVE::seqOctet_var(to.recorder->getOverviewSpectrum(to.record, 0, 8, 1, 4, TQ_KORVE::wmRectangle));
         }},
        {"addHistory",
         [&] {
             const QString text = newText();
             to.recorder->addHistory(to.record, wide(text));
             to.entries.add(text);
         }},
        {"addBookmark", [&] { to.recorder->addBookmark(to.record, 1, wide(newText())); }},
        {"removeBookmark", [&] { to.recorder->removeBookmark(to.record, 1); }},
        {"setRecordComment", [&] { to.recorder->setRecordComment(to.record, wide(newText())); }},
        {"copyRecord", [&] { to.records.add(QString::fromUtf8(copyOf(to))); }},
        {"removeRecord", [&] { removeRecord(to, copyOf(to)); }},
        {"announceNotificationReceiver",
         [&] {
             to.recorder->announceNotificationReceiver(to.receiver);
             to.recorder->removeNotificationReceiver(to.receiver);
         }},
        {"getReplaySessionById", [&] { replayForAMoment(to); }},
        {"createRecordingSession", [&] { recordNothing(to); }},
        {"copyRecordToArchDev", [&] { sendToNobody(to); }},
        {"import", [&] { importFile(to); }},
    };
}

std::vector<ServiceLoad::Kind> callsOfManager(Installation &to)
{
    return {
        {"getAllDevices", [&] { TQ_KRV::seqString_var(to.manager->getAllDevices()); }},
        {"getAllRecords", [&] { TQ_KRV::seqRECORD_DATA_var(to.manager->getAllRecords(device)); }},
        {"getRecord", [&] { TQ_KRV::struRECORD_DATA_var found; to.admin->getRecord(device, to.record, found.out()); }},
        {"addHistory",
         [&] {
             const QString text = newText();
             if (to.admin->addHistory(device, to.record, text.toStdWString().c_str()) == 0)
                 to.entries.add(text);
         }},
        {"setRecordComment",
         [&] { to.admin->setRecordComment(device, to.record, newText().toStdWString().c_str()); }},
        {"addBookmarks", [&] { to.admin->addBookmarks(device, to.record, TQ_KRV::seqBookmarks()); }},
        {"registerChannel", [&] { to.channels.add(QString::fromLatin1(newChannel(to))); }},
        {"removeChannel",
         [&] {
             const QByteArray id = newChannel(to);
             TQ_KRV::IF_KRV_c_Chan_var(to.manager->getKorveChannelInterface(id))->removeChannel();
         }},
        {"StartReplay",
         [&] {
             const TQ_KRV::IF_KORVE_Replay_var replay = to.manager->getKorveReplayInterface(device);
             replay->StartReplayReceivers(device, to.record, TQ_KRV::drHF_20k, 0, 8, 1, TQ_KRV::TCP_IF);
             replay->StopReplay(device, to.record);
         }},
        {"exportRecording", [&] { to.manager->exportRecording(to.exporter); }},
        {"cancelExport", [&] { to.manager->cancelExport("EXPORTER@R1@a@b@c"); }},
    };
}
