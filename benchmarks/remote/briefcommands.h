#pragma once

#include "tests/connectionmanagement/fakecommands.h"

/// Commands that are answered at once, so that a call costs what the ORB takes.
class BriefAdmin : public FakeAdmin
{
public:
    BriefAdmin();

    CORBA::ULong addHistory(const char *, const char *, const CORBA::WChar *) override { return 0; }
    CORBA::ULong setRecordComment(const char *, const char *, const CORBA::WChar *) override { return 0; }
    CORBA::ULong setRecordDeletableFlag(const char *, const char *, CORBA::Boolean) override { return 0; }
    CORBA::ULong removeHistoryEntry(const char *, const char *, CORBA::ULongLong) override { return 0; }
    CORBA::ULong setDeviceTime(const char *, CORBA::ULongLong) override { return 0; }
    CORBA::ULong requestRecordDataDetail(const char *, const char *) override { return 0; }
    CORBA::Boolean deleteRecord(const char *, const char *) override { return true; }
    CORBA::ULong copyRecord(const char *, const char *, const TQ_KRV::seqCopySection &, const CORBA::WChar *,
                            CORBA::String_out newRecordId) override;
    CORBA::ULong getOverviewSpectrumStreamed(const char *, const char *, CORBA::ULongLong, CORBA::ULongLong,
                                             CORBA::ULongLong, CORBA::ULong, TQ_KRV::eFFT_WINDOWING_MODES, const char *,
                                             CORBA::UShort) override
    {
        return 0;
    }
    void addBookmarks(const char *, const char *, const TQ_KRV::seqBookmarks &) override {}
    CORBA::ULong getDeviceTime(const char *, CORBA::ULongLong &time, CORBA::Boolean &synchronized) override;
    /// A record as benchmarks use them.
    CORBA::ULong getRecord(const char *, const char *, TQ_KRV::struRECORD_DATA_out found) override;
};

class BriefReplay : public FakeReplay
{
public:
    CORBA::ULong StartReplay(const char *, const char *, TQ_KRV::eDATARATE_CLASS, CORBA::ULongLong, CORBA::ULongLong,
                             CORBA::ULong) override
    {
        return 0;
    }
    CORBA::ULong PauseReplay(const char *, const char *) override { return 0; }
    CORBA::ULong ContinueReplay(const char *, const char *) override { return 0; }
    CORBA::ULong StopReplay(const char *, const char *) override { return 0; }
};
