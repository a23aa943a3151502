#pragma once

#include "idl/korve.hh"

/// A recorder that offers nothing: every operation raises `CORBA::NO_IMPLEMENT`. For fakes that offer a part.
class EmptyControl : public POA_TQ_KORVE::IF_Control
{
public:
    using Receiver = TQ_KORVE_IT::IF_Korve_IT_ptr;
    using Text = const char *;
    using Rate = TQ_KORVE::eDATARATE_CLASS;

    void announceNotificationReceiver(Receiver) override { refuse(); }
    void removeNotificationReceiver(Receiver) override { refuse(); }
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSession(Rate, CORBA::ULong, TQ_KORVE::eDATA_FORMAT,
                                                             Receiver) override
    {
        refuse();
    }
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSessionEx(Rate, Rate, CORBA::ULong, TQ_KORVE::eDATA_FORMAT,
                                                               Receiver) override
    {
        refuse();
    }
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionById(Text, Receiver) override { refuse(); }
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionByIdEx(Text, Receiver, Rate) override { refuse(); }
    TQ_KORVE::seqMETA_DATA *getActiveSessions() override { refuse(); }
    TQ_KORVE::seqMETA_DATA *getActiveSessionsEx3() override { refuse(); }
    TQ_KORVE::struMASS_STORE_STATUS *getMassStoreStatus() override { refuse(); }
    TQ_KORVE::seqDataRateClasses *getAvailableDataRateClasses() override { refuse(); }
    TQ_KORVE::seqDataRateClasses *getAvailableDataRateClassesEx() override { refuse(); }
    TQ_KORVE::seqDataRateClasses *getAvailableDataRateClassesEx2() override { refuse(); }
    TQ_KORVE::seqDataRateClasses *getAvailableDataRateClassesEx3() override { refuse(); }
    TQ_KORVE::seqOccupiedDataRateClasses *getOccupiedDataRateClasses() override { refuse(); }
    TQ_KORVE::seqOccupiedDataRateClasses *getOccupiedDataRateClassesEx() override { refuse(); }
    TQ_KORVE::seqOccupiedDataRateClasses *getOccupiedDataRateClassesEx2() override { refuse(); }
    TQ_KORVE::seqOccupiedDataRateClasses *getOccupiedDataRateClassesEx3() override { refuse(); }
    TQ_KORVE::seqMETA_DATA *listAllRecords() override { refuse(); }
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx2() override { refuse(); }
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx3() override { refuse(); }
    void copyRecordToArchDev(Text, Text) override { refuse(); }
    void copyRecordToArchDevEx(Text, Text, Receiver) override { refuse(); }
    void copyRecordFromArchDev(Text, Text) override { refuse(); }
    void copyRecordFromArchDevEx(Text, Text, Receiver) override { refuse(); }
    TQ_KORVE::seqMETA_DATA *listAllRecordsOnArchDev(Text) override { refuse(); }
    void removeRecordOnArchDev(Text, Text) override { refuse(); }
    void setDeletableFlagOfRecord(Text) override { refuse(); }
    void clearDeletableFlagOfRecord(Text) override { refuse(); }
    char *copyRecord(Text, const TQ_KORVE::seqFILE_PART &, const TQ_KORVE::wideText &) override { refuse(); }
    char *copyRecordEx(Text, const TQ_KORVE::seqFILE_PART &, const TQ_KORVE::wideText &, Receiver) override
    {
        refuse();
    }
    CORBA::Boolean removeRecord(Text) override { refuse(); }
    TQ_KORVE::struMETA_DATA *getMetaData(Text) override { refuse(); }
    void setRecordComment(Text, const TQ_KORVE::wideText &) override { refuse(); }
    void eraseAllRecords() override { refuse(); }
    CORBA::ULong getNrOfIndexEntries(Text) override { refuse(); }
    TQ_KORVE::seqINDEX_ENTRY *getSeqOfIndexEntries(Text, CORBA::ULong, CORBA::ULong) override { refuse(); }
    TQ_KORVE::struRECORD_DETAILS getRecordDetails(Text) override { refuse(); }
    void addBookmark(Text, CORBA::ULongLong, const TQ_KORVE::wideText &) override { refuse(); }
    void removeBookmark(Text, CORBA::ULongLong) override { refuse(); }
    TQ_KORVE::seqBookmarks *getBookmarks(Text) override { refuse(); }
    void addHistory(Text, const TQ_KORVE::wideText &) override { refuse(); }
    void removeHistoryEntry(Text, CORBA::ULongLong) override { refuse(); }
    TQ_KORVE::seqHistory *getHistory(Text) override { refuse(); }
    CORBA::ULongLong setSystemTime(CORBA::ULongLong) override { refuse(); }
    CORBA::ULongLong getSystemTime() override { refuse(); }
    CORBA::Boolean isSynchronizedByNTP() override { refuse(); }
    CORBA::Boolean setPasswdForArchievingUser(Text, Text) override { refuse(); }
    void shutdown() override { refuse(); }
    void reboot() override { refuse(); }
    void terminate() override { refuse(); }
    void restart() override { refuse(); }
    void startBiteOnDemand() override { refuse(); }
    void startBiteOnDemandEx(Receiver) override { refuse(); }
    void cancelBiteOnDemand() override { refuse(); }
    char *getFirmwareVersion() override { refuse(); }
    void setRecordIdle(Text) override { refuse(); }
    TQ_KORVE::seqOctet *getOverviewSpectrum(Text, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULong,
                                            TQ_KORVE::eFFT_WINDOWING_MODES) override
    {
        refuse();
    }
    void getOverviewSpectrumStreamed(Text, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULong,
                                     TQ_KORVE::eFFT_WINDOWING_MODES, CORBA::ULong, CORBA::UShort) override
    {
        refuse();
    }
    CORBA::ULong getPDWcount(Text) override { refuse(); }
    void getPDWs(Text, CORBA::ULong, CORBA::UShort) override { refuse(); }
    CORBA::ULong getInternalStatusData(CORBA::ULong, TQ_KORVE::seqOctet &) override { refuse(); }

private:
    [[noreturn]] static void refuse() { throw CORBA::NO_IMPLEMENT(0, CORBA::COMPLETED_NO); }
};
