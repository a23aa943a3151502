#pragma once

namespace KORVE_XML
{
class KORVE_RecordData;
}

namespace KorveCommon
{

/// Traces why @p record cannot be written as XML or read back from it, if it cannot.
void traceUnreadable(const KORVE_XML::KORVE_RecordData &record);

} // namespace KorveCommon
