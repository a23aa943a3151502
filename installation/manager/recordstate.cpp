#include "installation/manager/recordstate.h"

#include "korvebase/corbatoclientconverter.h"
#include "korvebase/corbatodeviceconverter.h"

namespace installation
{

TQ_KRV::eRECORD_STATUS toClientStatus(unsigned int deviceStatus)
{
    return KorveCommon::CorbaToClientConverter::convertRecordStatusFromXml(
        KorveCommon::CorbaToDeviceConverter::convertRecordStatusFromKorve(deviceStatus));
}

} // namespace installation
