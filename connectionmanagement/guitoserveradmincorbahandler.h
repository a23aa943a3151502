#pragma once

#include "idl/korvemanager.hh"
#include "korvebase/korvebase_export.h"
#include "korvebase/korvedatatypes.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

namespace KORVE_XML
{
class BookmarkEntry;
class KORVE_RecordData;
} // namespace KORVE_XML

namespace KorveGUI
{
class KorveGuiToServerCorbaHandler;

/// The administration of records: bookmarks, history, copies, comments, the deletable flag, device time, the overview
/// spectrum, and the return of archived file groups.
///
/// Times are microseconds since 1970, UTC; positions are bytes within the record's samples. Identifiers go out in
/// Latin-1, other letters as "?"; texts go out whole. Some operations stand here twice, for two kinds of callers: they
/// differ in their trace names and in what a user exception answers.
/// Thread: main. Every command blocks for one remote call, at most for the ORB's call limit, and before that for those
/// that fetch its interface when it has none.
/// Errors: each command answers 0, the manager's number, or one of errornumber.h and of the exception decoders;
/// TraceError words it. Arguments that are filled keep what they had when the number is not 0. Nothing is called twice.
class KORVEBASE_EXPORT GuiToServerAdminCorbaHandler : public QObject
{
    Q_OBJECT
public:
    using Bookmarks = QVector<KORVE_XML::BookmarkEntry>;

    /// Shares @p guiHandler, which must not be null.
    explicit GuiToServerAdminCorbaHandler(const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler);
    ~GuiToServerAdminCorbaHandler() override;

    /// Fetches the manager's interface; the first command does it by itself.
    bool Initialize();

    /// An empty list is sent as well. The manager answers no number: 0 when the call succeeds.
    unsigned long SaveBookmarksToKorve(const QString &deviceId, const QString &recordId, const Bookmarks &bookmarks);
    unsigned long DeleteBookmarksFromKorve(const QString &deviceId, const QString &recordId,
                                           const Bookmarks &bookmarks);
    unsigned long addBookmarkEntries(const QString &deviceId, const QString &recordId, const Bookmarks &bookmarks);
    /// Asks the manager to publish all that it knows of the record.
    unsigned long requestRecordDataDetail(const QString &deviceId, const QString &recordId);
    unsigned long SaveHistoryEntryToKorve(const QString &deviceId, const QString &recordId, const QString &text);
    unsigned long DeleteHistoryEntryFromKorve(const QString &deviceId, const QString &recordId,
                                              const unsigned long long &timestamp);
    unsigned long addHistory(const QString &deviceId, const QString &recordId, const QString &text);
    unsigned long removeHistoryEntry(const QString &deviceId, const QString &recordId, const long long &timestamp);
    /// Copies the parts into a new record, whose id goes into @p newRecordId.
    unsigned long CopyRecord(const QString &deviceId, const QString &recordId, QString &newRecordId,
                             const TQ_KRV::seqFILE_PART_var &parts, const QString &name);
    /// Copies one part.
    unsigned long copyRecord(const QString &deviceId, const QString &recordId, long long begin, long long end,
                             const QString &name);
    unsigned long SetRecordComment(const QString &deviceId, const QString &recordId, const QString &comment);
    unsigned long SetRecordDeletableFlag(const QString &deviceId, const QString &recordId, bool deletable);
    /// What there is goes into @p record: entries come behind those that it has already.
    unsigned long getRecord(const QString &deviceId, const QString &recordId, KORVE_XML::KORVE_RecordData &record);
    /// Has @p lineCount lines between the two positions sent to @p port of @p address. Of the size 32 bits go out, of
    /// the port 16.
    unsigned long overviewSpectrumStreamed(const QString &deviceId, const QString &recordId, long long startPosition,
                                           long long stopPosition, unsigned int lineCount, unsigned long fftSize,
                                           KorveDataTypes::eFFT_Window window, QString address, unsigned int port);
    unsigned long GetDeviceTime(const QString &deviceId, unsigned long long &time, bool &synchronized);
    unsigned long SetDeviceTime(const QString &deviceId, const unsigned long long &time);

    /// Has a file group brought back from the archive; false when that failed, for a reason that is traced.
    bool restorePelinFilegroup(const QString &deviceId, const QString &recordId, const QString &fileGroup);
    /// Where the archive is, as far as the manager knows it; what it answers.
    bool pelinConnectionParameter(QString &host, unsigned short &port);

    /// Whether the last command failed in such a way that it may have been carried out nevertheless.
    bool OutcomeIsUnknown() const { return outcomeUnknown; }

protected Q_SLOTS:
    void Slot_UpdateConnection(const QString &subsystem);

private:
    struct Command;

    bool IsServerAvailable();
    template <typename Request> unsigned long call(const Command &command, const Request &request);
    template <typename Request> bool callManager(const Command &command, const Request &request);
    unsigned long copy(const Command &command, QString &newRecordId, const TQ_KRV::seqFILE_PART &parts,
                       const QString &name);

    TQ_KRV::IF_KORVE_Admin_var adminInterface;
    const std::shared_ptr<KorveGuiToServerCorbaHandler> guiHandler;
    bool outcomeUnknown = false;
};
} // namespace KorveGUI
