#include "connectionmanagement/guitoserveradmincorbahandler.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "common/errornumber.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "connectionmanagement/managercall.h"
#include "connectionmanagement/remotetext.h"

#include "coresupport/trace.h"
#include "korvebase/corbatoclientconverter.h"

using KorveCommon::AbstractServerConnectionData;
using TQ_KRV::IF_KORVE_Admin;
using TQ_KRV::IF_KORVE_Admin_ptr;
using TQ_KRV::IF_KRV_c_KRV_ptr;
using TQ_KRV::seqFILE_PART;

namespace errornumber = korve::errornumber;
namespace ToManager = KorveCommon::CorbaToClientConverter;

namespace KorveGUI
{
using remote::id;
using remote::text;

/// A command, and whether a user exception of the manager counts for what it says.
struct GuiToServerAdminCorbaHandler::Command : TracedCommand {
    bool decodesUserExceptions = true;
};

namespace
{
constexpr char sourceName[] = "connectionmanagement/guitoserveradmincorbahandler";

void traceText(const char *words)
{
    traceAt(TraceLevel::Normal, sourceName, [words] { return QString::fromLatin1(words); });
}

TQ_KRV::seqBookmarks toManager(const QVector<KORVE_XML::BookmarkEntry> &bookmarks)
{
    TQ_KRV::seqBookmarks sequence;
    sequence.length(static_cast<CORBA::ULong>(bookmarks.size()));
    for (int i = 0; i < bookmarks.size(); ++i)
        ToManager::fillCorbaBookmarkEntry(sequence[static_cast<CORBA::ULong>(i)], bookmarks.at(i));
    return sequence;
}
} // namespace

GuiToServerAdminCorbaHandler::GuiToServerAdminCorbaHandler(
    const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler)
    : guiHandler(guiHandler)
{
    connect(guiHandler->GetServerConnectionData().get(), &AbstractServerConnectionData::ConnectionChanged, this,
            &GuiToServerAdminCorbaHandler::Slot_UpdateConnection);
}

GuiToServerAdminCorbaHandler::~GuiToServerAdminCorbaHandler() = default;

bool GuiToServerAdminCorbaHandler::Initialize()
{
    if (!guiHandler->IsConnected())
        return false;
    adminInterface = guiHandler->GetKorveAdminInterface();
    return !CORBA::is_nil(adminInterface);
}

bool GuiToServerAdminCorbaHandler::IsServerAvailable()
{
    return !CORBA::is_nil(adminInterface) || Initialize();
}

void GuiToServerAdminCorbaHandler::Slot_UpdateConnection(const QString &subsystem)
{
    if (subsystem != guiHandler->GetCurrentSubsystem())
        return;
    adminInterface = IF_KORVE_Admin::_nil();
    Initialize();
}

template <typename Request>
unsigned long GuiToServerAdminCorbaHandler::call(const Command &command, const Request &request)
{
    outcomeUnknown = false;
    if (!IsServerAvailable())
        return errornumber::serverNotAvailable;
    const TQ_KRV::IF_KORVE_Admin_var admin = guiHandler->GetKorveAdminInterface();
    if (CORBA::is_nil(admin)) {
        traceText("error calling getKorveAdminInterface");
        return errornumber::noInterface;
    }
    const auto made = [&]() -> unsigned long { return request(admin.in()); };
    return callOr(made, [&](const RemoteFailure &failure) {
        outcomeUnknown = failure.mayHaveTakenEffect();
        const bool isUndecoded = failure.user && !command.decodesUserExceptions;
        return numberOfFailure(isUndecoded ? RemoteFailure() : failure, command);
    });
}

template <typename Request>
bool GuiToServerAdminCorbaHandler::callManager(const Command &command, const Request &request)
{
    outcomeUnknown = false;
    if (!IsServerAvailable())
        return false;
    const TQ_KRV::IF_KRV_c_KRV_var manager = guiHandler->GetKorveInterface();
    if (CORBA::is_nil(manager)) {
        traceText("error calling getKorveInterface");
        return false;
    }
    return callOr([&] { return request(manager.in()); }, [&](const RemoteFailure &failure) {
        outcomeUnknown = failure.mayHaveTakenEffect();
        traceManagerFailure(failure, command, QLatin1String(command.name), sourceName);
        return false;
    });
}

unsigned long GuiToServerAdminCorbaHandler::SaveBookmarksToKorve(const QString &deviceId, const QString &recordId,
                                                                 const Bookmarks &bookmarks)
{
    return call({{"SaveBookmarksToKorve", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        admin->addBookmarks(id(deviceId), id(recordId), toManager(bookmarks));
        return errornumber::success;
    });
}

unsigned long GuiToServerAdminCorbaHandler::DeleteBookmarksFromKorve(const QString &deviceId, const QString &recordId,
                                                                     const Bookmarks &bookmarks)
{
    return call({{"DeleteBookmarksFromKorve", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        admin->deleteBookmarks(id(deviceId), id(recordId), toManager(bookmarks));
        return errornumber::success;
    });
}

// contract: of the operations that stand here twice, this one, addHistory, removeHistoryEntry and copyRecord take a user
// exception for an unspecified failure, as does overviewSpectrumStreamed
unsigned long GuiToServerAdminCorbaHandler::addBookmarkEntries(const QString &deviceId, const QString &recordId,
                                                               const Bookmarks &bookmarks)
{
    return call({{"addBookmarkEntries", deviceId, recordId}, false}, [&](IF_KORVE_Admin_ptr admin) {
        admin->addBookmarks(id(deviceId), id(recordId), toManager(bookmarks));
        return errornumber::success;
    });
}

unsigned long GuiToServerAdminCorbaHandler::requestRecordDataDetail(const QString &deviceId, const QString &recordId)
{
    // contract: traced with a capital
    return call({{"RequestRecordDataDetail", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->requestRecordDataDetail(id(deviceId), id(recordId));
    });
}

unsigned long GuiToServerAdminCorbaHandler::SaveHistoryEntryToKorve(const QString &deviceId, const QString &recordId,
                                                                    const QString &words)
{
    return call({{"SaveHistoryEntryToKorve", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->addHistory(id(deviceId), id(recordId), text(words));
    });
}

unsigned long GuiToServerAdminCorbaHandler::DeleteHistoryEntryFromKorve(const QString &deviceId,
                                                                        const QString &recordId,
                                                                        const unsigned long long &timestamp)
{
    return call({{"DeleteHistoryEntryFromKorve", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->removeHistoryEntry(id(deviceId), id(recordId), timestamp);
    });
}

unsigned long GuiToServerAdminCorbaHandler::addHistory(const QString &deviceId, const QString &recordId,
                                                       const QString &words)
{
    return call({{"addHistory", deviceId, recordId}, false}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->addHistory(id(deviceId), id(recordId), text(words));
    });
}

unsigned long GuiToServerAdminCorbaHandler::removeHistoryEntry(const QString &deviceId, const QString &recordId,
                                                               const long long &timestamp)
{
    return call({{"removeHistoryEntry", deviceId, recordId}, false}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->removeHistoryEntry(id(deviceId), id(recordId), static_cast<CORBA::ULongLong>(timestamp));
    });
}

unsigned long GuiToServerAdminCorbaHandler::copy(const Command &command, QString &newRecordId,
                                                 const seqFILE_PART &parts, const QString &name)
{
    return call(command, [&](IF_KORVE_Admin_ptr admin) {
        CORBA::String_var copied;
        const CORBA::ULong number =
            admin->copyRecord(id(command.deviceId), id(*command.recordId), parts, text(name), copied.out());
        if (number == errornumber::success)
            newRecordId = KorveCommon::wire::identifier(copied);
        return number;
    });
}

unsigned long GuiToServerAdminCorbaHandler::CopyRecord(const QString &deviceId, const QString &recordId,
                                                       QString &newRecordId, const TQ_KRV::seqFILE_PART_var &parts,
                                                       const QString &name)
{
    const bool isNull = !parts.operator->();
    return copy({{"CopyRecord", deviceId, recordId}}, newRecordId, isNull ? seqFILE_PART() : parts.in(), name);
}

unsigned long GuiToServerAdminCorbaHandler::copyRecord(const QString &deviceId, const QString &recordId,
                                                       long long begin, long long end, const QString &name)
{
    seqFILE_PART parts;
    parts.length(1);
    parts[0] = {static_cast<CORBA::ULongLong>(begin), static_cast<CORBA::ULongLong>(end)};
    QString dropped;
    return copy({{"copyRecord", deviceId, recordId}, false}, dropped, parts, name);
}

unsigned long GuiToServerAdminCorbaHandler::SetRecordComment(const QString &deviceId, const QString &recordId,
                                                             const QString &comment)
{
    return call({{"SetRecordComment", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->setRecordComment(id(deviceId), id(recordId), text(comment));
    });
}

unsigned long GuiToServerAdminCorbaHandler::SetRecordDeletableFlag(const QString &deviceId, const QString &recordId,
                                                                   bool deletable)
{
    return call({{"SetRecordDeletableFlag", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->setRecordDeletableFlag(id(deviceId), id(recordId), deletable);
    });
}

unsigned long GuiToServerAdminCorbaHandler::getRecord(const QString &deviceId, const QString &recordId,
                                                      KORVE_XML::KORVE_RecordData &record)
{
    return call({{"getRecord", deviceId, recordId}}, [&](IF_KORVE_Admin_ptr admin) {
        TQ_KRV::struRECORD_DATA_var data;
        const CORBA::ULong number = admin->getRecord(id(deviceId), id(recordId), data.out());
        if (number == errornumber::success)
            ToManager::fillRecordData(record, data.in());
        return number;
    });
}

unsigned long GuiToServerAdminCorbaHandler::overviewSpectrumStreamed(const QString &deviceId, const QString &recordId,
                                                                     long long startPosition, long long stopPosition,
                                                                     unsigned int lineCount, unsigned long fftSize,
                                                                     KorveDataTypes::eFFT_Window window,
                                                                     QString address, unsigned int port)
{
    return call({{"overviewSpectrumStreamed", deviceId, recordId}, false}, [&](IF_KORVE_Admin_ptr admin) {
        return admin->getOverviewSpectrumStreamed(
            id(deviceId), id(recordId), static_cast<CORBA::ULongLong>(startPosition),
            static_cast<CORBA::ULongLong>(stopPosition), lineCount, static_cast<CORBA::ULong>(fftSize),
            ToManager::convertWindowingModes(window), id(address), static_cast<CORBA::UShort>(port));
    });
}

unsigned long GuiToServerAdminCorbaHandler::GetDeviceTime(const QString &deviceId, unsigned long long &time,
                                                          bool &synchronized)
{
    return call({{"GetDeviceTime", deviceId}}, [&](IF_KORVE_Admin_ptr admin) {
        CORBA::ULongLong told = 0;
        CORBA::Boolean isSynchronized = false;
        const CORBA::ULong number = admin->getDeviceTime(id(deviceId), told, isSynchronized);
        if (number == errornumber::success) {
            time = told;
            synchronized = isSynchronized;
        }
        return number;
    });
}

unsigned long GuiToServerAdminCorbaHandler::SetDeviceTime(const QString &deviceId, const unsigned long long &time)
{
    return call({{"SetDeviceTime", deviceId}},
                [&](IF_KORVE_Admin_ptr admin) { return admin->setDeviceTime(id(deviceId), time); });
}

bool GuiToServerAdminCorbaHandler::restorePelinFilegroup(const QString &deviceId, const QString &recordId,
                                                         const QString &fileGroup)
{
    return callManager({{"restorePelinFilegroup", deviceId, recordId}}, [&](IF_KRV_c_KRV_ptr manager) {
        manager->restorePelinFileGroup(id(deviceId), id(recordId), id(fileGroup));
        return true;
    });
}

bool GuiToServerAdminCorbaHandler::pelinConnectionParameter(QString &host, unsigned short &port)
{
    return callManager({{"pelinConnectionParameter", QStringLiteral("n/a")}}, [&](IF_KRV_c_KRV_ptr manager) {
        CORBA::String_var told;
        const bool isKnown = manager->getPelinConnectionParameter(told.out(), port);
        host = KorveCommon::wire::identifier(told);
        return isKnown;
    });
}
} // namespace KorveGUI
