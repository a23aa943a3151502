#include "benchmarks/remote/briefcommands.h"

#include "benchmarks/support/recordpool.h"

#include "korvebase/corbatoclientconverter.h"

BriefAdmin::BriefAdmin()
{
    const KORVE_XML::KORVE_RecordData plain = makeRecord(makePlain(0));
    const TQ_KRV::struRECORD_DATA_var data = KorveCommon::CorbaToClientConverter::toCorbaRecordData(plain);
    record = data.in();
}

CORBA::ULong BriefAdmin::copyRecord(const char *, const char *, const TQ_KRV::seqCopySection &, const CORBA::WChar *,
                                    CORBA::String_out newRecordId)
{
    newRecordId = CORBA::string_dup("R2");
    return 0;
}

CORBA::ULong BriefAdmin::getDeviceTime(const char *, CORBA::ULongLong &time, CORBA::Boolean &synchronized)
{
    time = 1;
    synchronized = true;
    return 0;
}

CORBA::ULong BriefAdmin::getRecord(const char *, const char *, TQ_KRV::struRECORD_DATA_out found)
{
    found = new TQ_KRV::struRECORD_DATA(record);
    return 0;
}
