#pragma once

#include "tests/connectionmanagement/fakemanager.h"

/// A manager whose device "many" has 10 000 records; no other has any.
class RecordManager : public FakeManager
{
public:
    explicit RecordManager(PortableServer::POA_ptr poa);

    /// Hands the records out without a copy, so that the call costs what the ORB takes.
    TQ_KRV::seqRECORD_DATA *getAllRecords(const char *deviceId) override;

private:
    TQ_KRV::seqRECORD_DATA many;
};
