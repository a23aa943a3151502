#pragma once

#include "korvebase/korvebase_export.h"

#include "objectmodel/korve_recorddata.h"

/// Numbers of a device's metadata in the numbering of the object model.
///
/// Thread: any.  Errors: an unknown number is traced and becomes HF_20k or RAW.
namespace KorveCommon::CorbaMetaDataConverter
{

KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataRate convertDataRateFromKorve(unsigned int number);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataFormat convertDataFormatFromKorve(unsigned int number);

} // namespace KorveCommon::CorbaMetaDataConverter
