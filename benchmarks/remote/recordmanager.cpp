#include "benchmarks/remote/recordmanager.h"

#include "benchmarks/support/recordpool.h"

#include "korvebase/corbatoclientconverter.h"

#include <cstring>

using namespace TQ_KRV;

namespace
{

constexpr CORBA::ULong recordCount = 10000;

} // namespace

RecordManager::RecordManager(PortableServer::POA_ptr poa) : FakeManager(poa)
{
    many.length(recordCount);
    for (CORBA::ULong n = 0; n < recordCount; ++n) {
        const KORVE_XML::KORVE_RecordData record = makeRecord(makePlain(static_cast<int>(n)));
        const struRECORD_DATA_var data = KorveCommon::CorbaToClientConverter::toCorbaRecordData(record);
        many[n] = data.in();
    }
}

seqRECORD_DATA *RecordManager::getAllRecords(const char *deviceId)
{
    const bool hasRecords = std::strcmp(deviceId, "many") == 0;
    return hasRecords ? new seqRECORD_DATA(recordCount, recordCount, many.get_buffer(), false) : new seqRECORD_DATA;
}
