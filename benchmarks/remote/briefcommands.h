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
    void addBookmarks(const char *, const char *, const TQ_KRV::seqBookmarks &) override {}
    CORBA::ULong getDeviceTime(const char *, CORBA::ULongLong &time, CORBA::Boolean &synchronized) override;
    /// A record as benchmarks use them.
    CORBA::ULong getRecord(const char *, const char *, TQ_KRV::struRECORD_DATA_out found) override;
};

class BriefReplay : public FakeReplay
{
public:
    CORBA::ULong PauseReplay(const char *, const char *) override { return 0; }
};
