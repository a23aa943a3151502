#include "connectionmanagement/guitoserverexportcorbahandler.h"

#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "connectionmanagement/managercall.h"
#include "connectionmanagement/remotetext.h"

#include "coresupport/trace.h"
#include "korvebase/corbatoclientconverter.h"
#include "objectmodel/korve_recorddata.h"

#include <QStringList>

using TQ_KRV::IF_ExportCallback_ptr;
using TQ_KRV::IF_KORVE_Admin;
using TQ_KRV::IF_KORVE_Admin_var;
using TQ_KRV::IF_KRV_c_KRV_var;

namespace KorveGUI
{
using remote::id;

namespace
{
constexpr char sourceName[] = "connectionmanagement/guitoserverexportcorbahandler";
const QString undefinedDevice = QStringLiteral("undefined");

void tell(bool *asked, bool answer)
{
    if (asked)
        *asked = answer;
}

void traceText(const char *words)
{
    traceAt(TraceLevel::Normal, sourceName, [words] { return QString::fromLatin1(words); });
}

/// What an export is about: the first two of exactly five fields of its id; else nothing is known.
struct Exported {
    explicit Exported(const QString &exportId)
    {
        const QStringList fields = exportId.split(QLatin1Char('@'), Qt::SkipEmptyParts);
        if (fields.size() != 5)
            return;
        deviceId = fields.at(0);
        recordId = fields.at(1);
    }
    QString deviceId;
    QString recordId;
};

QString formatName(TQ_KRV::eDATA_FORMAT format)
{
    static const KORVE_XML::KORVE_RecordData names;
    return names.DataFormatToName(KorveCommon::CorbaToClientConverter::convertDataFormatFromClient(format));
}

/// Why the manager, which answered @p number, has no record to show.
QString reasonFor(CORBA::ULong number)
{
    switch (number) {
    case 500:
    case 502:
        return QStringLiteral("The device is not available");
    case 501:
        return QStringLiteral("The record is not available"); // contract: no period here
    default:
        return QStringLiteral("unexpected error ID %1").arg(number);
    }
}

QString reasonFor(const RemoteFailure &failure)
{
    if (IF_KORVE_Admin::exAdmin::_downcast(failure.user))
        return QStringLiteral("The record is not available.");
    numberOfFailure(failure, {"recordDataFormat", undefinedDevice}); // for the trace
    const QString kind = QLatin1String(failure.user ? "user" : failure.system ? "system" : "unknown");
    return QStringLiteral("CORBA %1 exception on retrieving record information.").arg(kind);
}
} // namespace

GuiToServerExportCorbaHandler::GuiToServerExportCorbaHandler(
    const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler)
    : guiHandler(guiHandler)
{
}

GuiToServerExportCorbaHandler::~GuiToServerExportCorbaHandler() = default;

bool GuiToServerExportCorbaHandler::connected() const
{
    return guiHandler && guiHandler->IsConnected();
}

TQ_KRV::IF_KRV_c_KRV_ptr GuiToServerExportCorbaHandler::manager() const
{
    const TQ_KRV::IF_KRV_c_KRV_ptr manager = guiHandler->GetKorveInterface();
    if (CORBA::is_nil(manager))
        traceText("Error calling GetKorveInterface");
    return manager;
}

TQ_KRV::IF_KORVE_Admin_ptr GuiToServerExportCorbaHandler::administration() const
{
    const IF_KORVE_Admin_var admin = guiHandler ? guiHandler->GetKorveAdminInterface() : IF_KORVE_Admin::_nil();
    if (CORBA::is_nil(admin))
        traceText("Error calling GetKorveAdminInterface");
    return IF_KORVE_Admin::_duplicate(admin);
}

QString GuiToServerExportCorbaHandler::deviceID(const QString &address) const
{
    if (!connected())
        return {};
    const IF_KRV_c_KRV_var korve = manager();
    if (CORBA::is_nil(korve))
        return {};
    const auto made = [&] {
        const CORBA::String_var device = korve->mapAddressToDeviceId(id(address));
        return KorveCommon::wire::identifier(device);
    };
    return callOr(made, [&](const RemoteFailure &failure) {
        traceManagerFailure(failure, {"deviceID", address}, QStringLiteral("deviceID(%1)").arg(address), sourceName);
        return QString();
    });
}

bool GuiToServerExportCorbaHandler::exportRecord(IF_ExportCallback_ptr callback, bool *outcomeIsUnknown) const
{
    tell(outcomeIsUnknown, false);
    if (!connected()) {
        traceText("Error calling exportRecord while not connected");
        return false;
    }
    const IF_KRV_c_KRV_var korve = manager();
    if (CORBA::is_nil(korve))
        return false;
    if (!callback)
        callback = TQ_KRV::IF_ExportCallback::_nil(); // which fails as any other that cannot be called
    QString exportId;
    const auto made = [&] {
        const CORBA::String_var told = callback->exportID();
        exportId = KorveCommon::wire::identifier(told);
        korve->exportRecording(callback);
        return true;
    };
    return callOr(made, [&](const RemoteFailure &failure) {
        const Exported exported(exportId);
        // contract: a refusal of the manager has no words of its own here
        traceFailure(failure, {"exportRecord", exported.deviceId, exported.recordId}, sourceName);
        tell(outcomeIsUnknown, failure.mayHaveTakenEffect());
        return false;
    });
}

bool GuiToServerExportCorbaHandler::cancelExport(const QString &exportId) const
{
    if (!connected()) {
        traceText("Error calling cancelExport while not connected");
        return false;
    }
    const IF_KRV_c_KRV_var korve = manager();
    if (CORBA::is_nil(korve))
        return false;
    const auto made = [&] {
        korve->cancelExport(id(exportId));
        return true;
    };
    return callOr(made, [&](const RemoteFailure &failure) {
        traceManagerFailure(failure, {"cancelExport", undefinedDevice},
                            QStringLiteral("cancelExport(%1)").arg(exportId), sourceName);
        return false;
    });
}

bool GuiToServerExportCorbaHandler::deleteRecord(const QString &deviceId, const QString &recordId,
                                                 bool *outcomeIsUnknown) const
{
    tell(outcomeIsUnknown, false);
    const IF_KORVE_Admin_var admin = administration();
    if (CORBA::is_nil(admin))
        return false;
    const auto made = [&]() -> bool { return admin->deleteRecord(id(deviceId), id(recordId)); };
    return callOr(made, [&](const RemoteFailure &failure) {
        traceFailure(failure, {"deleteRecord", deviceId, recordId}, sourceName);
        tell(outcomeIsUnknown, failure.mayHaveTakenEffect());
        return false;
    });
}

QString GuiToServerExportCorbaHandler::recordDataFormat(const QString &deviceId, const QString &recordId,
                                                        QString &error) const
{
    if (!connected()) {
        error = QStringLiteral("not connected");
        return {};
    }
    const IF_KORVE_Admin_var admin = administration();
    if (CORBA::is_nil(admin)) {
        error = QStringLiteral("Unable to access CORBA Interface.");
        return {};
    }
    const auto made = [&] {
        TQ_KRV::struRECORD_DATA_var record;
        const CORBA::ULong number = admin->getRecord(id(deviceId), id(recordId), record.out());
        if (number == 0)
            return formatName(record->dataFormat);
        error = reasonFor(number);
        return QString();
    };
    return callOr(made, [&](const RemoteFailure &failure) {
        error = reasonFor(failure);
        return QString();
    });
}
} // namespace KorveGUI
