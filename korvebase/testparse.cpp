#include "korvebase/testparse.h"

#include "objectmodel/korve_recorddata.h"

#include "coresupport/trace.h"
#include "objectbase/exceptions.h"

namespace KorveCommon
{

namespace
{

using KORVE_XML::KORVE_RecordData;
using REPORTGENERATOR::RGException;

constexpr char sourceName[] = "korvebase/testparse";

/// Writing throws what Check throws, and reading accepts every value that Check accepts.
bool passesCheck(const KORVE_RecordData &record)
{
    try {
        record.Check();
        return true;
    } catch (const RGException &) {
        return false;
    }
}

} // namespace

void traceUnreadable(const KORVE_RecordData &record)
{
    // The trial itself takes some fifty times as long as making the record.
    if (passesCheck(record))
        return;
    try {
        KORVE_RecordData copy;
        copy.SetXmlString(record.GetXmlString(), false);
    } catch (const RGException &failure) {
        traceAt(TraceLevel::Normal, sourceName, [&] { return failure.GetMessage(); });
    }
}

} // namespace KorveCommon
