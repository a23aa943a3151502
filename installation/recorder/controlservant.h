#pragma once

#include "installation/recorder/deviceoperations.h"
#include "installation/recorder/notes.h"
#include "installation/recorder/record.h"
#include "installation/recorder/sessions.h"
#include "installation/recorder/storethread.h"
#include "installation/recorder/unservedcontrol.h"

#include <memory>

namespace installation::recorder
{

/// What others may ask of a recorder: its records, its storage and its clock. What it does not offer is named in
/// UnservedControl.
///
/// All three lists hold every record. A record's comment is its name: the contract carries one text per record. Index
/// entries count from 0; a section that reaches beyond the last is cut there. removeRecord() answers false for a record
/// that is not deletable. Times are microseconds since 1970, UTC.
/// Thread: the ORB's; waits for the store thread, never longer than its limit.  Errors: `exKorve` with the kind of the
/// cause, `ekINVALID_VALUE` for a bookmark or an entry of the history that is not there. A change that the store has
/// begun and does not finish in time may still be made: `CORBA::TIMEOUT`, which may be completed.
class ControlServant : public UnservedControl
{
public:
    /// In units of 16 bits.
    static constexpr CORBA::ULong longestText = 65535;

    ControlServant(std::shared_ptr<StoreThread> store, std::shared_ptr<DeviceOperations> operations,
                   std::shared_ptr<Sessions> sessions, std::string firmwareVersion);

    void announceNotificationReceiver(Receiver receiver) override;
    void removeNotificationReceiver(Receiver receiver) override;
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionById(Text recordId, Receiver receiver) override;
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionByIdEx(Text recordId, Receiver receiver, Rate rate) override;
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSession(Rate rate, CORBA::ULong loopMebibytes, Format format,
                                                             Receiver receiver) override;
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSessionEx(Rate rate, Rate occupied, CORBA::ULong loopMebibytes,
                                                               Format format, Receiver receiver) override;
    void setRecordIdle(Text recordId) override;
    TQ_KORVE::seqMETA_DATA *getActiveSessions() override;
    TQ_KORVE::seqMETA_DATA *getActiveSessionsEx3() override;
    Rates *getAvailableDataRateClasses() override;
    Rates *getAvailableDataRateClassesEx() override;
    Rates *getAvailableDataRateClassesEx2() override;
    Rates *getAvailableDataRateClassesEx3() override;
    OccupiedRates *getOccupiedDataRateClasses() override;
    OccupiedRates *getOccupiedDataRateClassesEx() override;
    OccupiedRates *getOccupiedDataRateClassesEx2() override;
    OccupiedRates *getOccupiedDataRateClassesEx3() override;

    TQ_KORVE::seqMETA_DATA *listAllRecords() override;
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx2() override;
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx3() override;
    TQ_KORVE::struMETA_DATA *getMetaData(Text recordId) override;
    TQ_KORVE::struRECORD_DETAILS getRecordDetails(Text recordId) override;
    void setRecordComment(Text recordId, const TQ_KORVE::wideText &comment) override;
    void setDeletableFlagOfRecord(Text recordId) override;
    void clearDeletableFlagOfRecord(Text recordId) override;
    CORBA::Boolean removeRecord(Text recordId) override;

    CORBA::ULong getNrOfIndexEntries(Text recordId) override;
    TQ_KORVE::seqINDEX_ENTRY *getSeqOfIndexEntries(Text recordId, CORBA::ULong first, CORBA::ULong count) override;

    void addBookmark(Text recordId, CORBA::ULongLong timestampUs, const TQ_KORVE::wideText &text) override;
    void removeBookmark(Text recordId, CORBA::ULongLong timestampUs) override;
    void addBookmarks(Text recordId, const TQ_KORVE::seqBookmarks &bookmarks) override;
    void removeBookmarks(Text recordId, const TQ_KORVE::seqBookmarks &bookmarks) override;
    TQ_KORVE::seqBookmarks *getBookmarks(Text recordId) override;
    void addHistory(Text recordId, const TQ_KORVE::wideText &text) override;
    void removeHistoryEntry(Text recordId, CORBA::ULongLong timestampUs) override;
    TQ_KORVE::seqHistory *getHistory(Text recordId) override;

    TQ_KORVE::struMASS_STORE_STATUS *getMassStoreStatus() override;
    char *copyRecord(Text recordId, const TQ_KORVE::seqFILE_PART &parts, const TQ_KORVE::wideText &name) override;
    char *copyRecordEx(Text recordId, const TQ_KORVE::seqFILE_PART &parts, const TQ_KORVE::wideText &name,
                       Receiver receiver) override;
    TQ_KORVE::seqMETA_DATA *listAllRecordsOnArchDev(Text archiveDevice) override;
    void copyRecordToArchDev(Text recordId, Text url) override;
    void copyRecordToArchDevEx(Text recordId, Text url, Receiver receiver) override;
    TQ_KORVE::seqOctet *getOverviewSpectrum(Text recordId, CORBA::ULongLong startPosition,
                                            CORBA::ULongLong stopPosition, CORBA::ULongLong lineCount,
                                            CORBA::ULong fftSize, Window window) override;
    void getOverviewSpectrumStreamed(Text recordId, CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition,
                                     CORBA::ULongLong lineCount, CORBA::ULong fftSize, Window window,
                                     CORBA::ULong address, CORBA::UShort port) override;
    CORBA::ULongLong setSystemTime(CORBA::ULongLong timeUs) override;
    CORBA::ULongLong getSystemTime() override;
    CORBA::Boolean isSynchronizedByNTP() override;
    char *getFirmwareVersion() override;

private:
    template <typename Work> auto ask(const char *operation, Work work);
    Record recordOf(const char *operation, Text recordId);
    void change(const char *operation, Text recordId, std::function<void(Record &)> edit);
    void changeBookmarks(const char *operation, Text recordId, NoteChanges changes);

    const std::shared_ptr<StoreThread> store;
    const std::shared_ptr<DeviceOperations> operations;
    const std::shared_ptr<Sessions> sessions;
    const std::string firmwareVersion;
};

} // namespace installation::recorder
