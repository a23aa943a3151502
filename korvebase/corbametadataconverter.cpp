#include "korvebase/corbametadataconverter.h"

#include "korvebase/corbatodeviceconverter.h"

namespace KorveCommon::CorbaMetaDataConverter
{

KORVE_XML::KORVE_RecordData::DataRate convertDataRateFromKorve(unsigned int number)
{
    return CorbaToDeviceConverter::convertDataRateClassFromKorve(number);
}

KORVE_XML::KORVE_RecordData::DataFormat convertDataFormatFromKorve(unsigned int number)
{
    return CorbaToDeviceConverter::convertDataFormatFromKorve(number);
}

} // namespace KorveCommon::CorbaMetaDataConverter
