#pragma once

#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include "objectmodel/korve_recorddata.h"

namespace installation
{

// What a recorder tells of its records, asked and taken into the object model. All of it blocks for remote calls.
// Errors: what the recorder raises.

/// Everything: meta data, index, bookmarks and history.
KORVE_XML::KORVE_RecordData wholeRecord(TQ_KORVE::IF_Control_ptr recorder, const char *recordId);
/// Meta data and index.
KORVE_XML::KORVE_RecordData recordWithIndex(TQ_KORVE::IF_Control_ptr recorder, const char *recordId);

/// The meta data of all records, in the recorder's order, as the manager's clients take them; the caller owns it.
TQ_KRV::seqRECORD_DATA *toClientRecords(const TQ_KORVE::seqMETA_DATA &records);

/// A person's text in the form of the recorder, unit by unit.
TQ_KORVE::wideText toDeviceText(const CORBA::WChar *text);

} // namespace installation
