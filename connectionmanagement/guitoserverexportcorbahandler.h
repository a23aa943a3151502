#pragma once

#include "idl/korvemanager.hh"
#include "korvebase/korvebase_export.h"

#include <QObject>
#include <QString>

#include <memory>

namespace KorveGUI
{
class KorveGuiToServerCorbaHandler;

/// For export clients: starts and cancels exports, finds the device of an address, deletes records and tells their data
/// format. Keeps no reference: each operation fetches one.
///
/// Thread: main, or the exporter's while nobody else uses or changes the connection. Every operation blocks for its
/// remote calls, each at most for the ORB's call limit.
/// Errors: traced; answered by false or an empty text, also where the answer was lost and the manager may have acted,
/// which the operations that start something tell apart.
/// Identifiers go out in Latin-1, other letters as "?".
class KORVEBASE_EXPORT GuiToServerExportCorbaHandler : public QObject
{
    Q_OBJECT
public:
    /// Shares @p guiHandler. With null, nothing is ever connected.
    explicit GuiToServerExportCorbaHandler(const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler);
    ~GuiToServerExportCorbaHandler() override;

    bool connected() const;
    /// The device at @p address.
    QString deviceID(const QString &address) const;
    /// Has a record exported to @p callback, which is borrowed for the call. The export itself goes on afterwards.
    /// Says in @p outcomeIsUnknown, unless that is null, whether it may be going on although this is false.
    bool exportRecord(TQ_KRV::IF_ExportCallback_ptr callback, bool *outcomeIsUnknown = nullptr) const;
    bool cancelExport(const QString &exportId) const;
    /// Whether the record has been deleted. Says in @p outcomeIsUnknown, unless that is null, whether it may have been
    /// although this is false.
    bool deleteRecord(const QString &deviceId, const QString &recordId, bool *outcomeIsUnknown = nullptr) const;
    /// The name of the record's data format. Otherwise says in @p error why there is none; it is left alone on success.
    /// Formats that the manager cannot name are those it shows as another.
    QString recordDataFormat(const QString &deviceId, const QString &recordId, QString &error) const;

private:
    TQ_KRV::IF_KRV_c_KRV_ptr manager() const;
    TQ_KRV::IF_KORVE_Admin_ptr administration() const;

    const std::shared_ptr<KorveGuiToServerCorbaHandler> guiHandler;
};
} // namespace KorveGUI
