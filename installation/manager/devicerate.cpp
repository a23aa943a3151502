#include "installation/manager/devicerate.h"

#include "korvebase/corbatoclientconverter.h"
#include "korvebase/corbatodeviceconverter.h"

#include <algorithm>
#include <array>

namespace installation
{

namespace
{

namespace ToClient = KorveCommon::CorbaToClientConverter;
namespace ToDevice = KorveCommon::CorbaToDeviceConverter;

constexpr std::array withoutDevice{TQ_KRV::drHF_8M, TQ_KRV::drHF_12M, TQ_KRV::drVUHF_60M};
constexpr std::array streams{TQ_KRV::dfRAW,      TQ_KRV::dfANALOG_AUDIO,  TQ_KRV::dfTIMEDOMAIN_DATA,
                             TQ_KRV::dfIQ_BURST, TQ_KRV::dfDIGITAL_AUDIO, TQ_KRV::dfIQDW,
                             TQ_KRV::dfIQBW};

} // namespace

std::optional<TQ_KORVE::eDATARATE_CLASS> deviceRateOf(TQ_KRV::eDATARATE_CLASS rate)
{
    const bool isKnown = std::find(withoutDevice.begin(), withoutDevice.end(), rate) == withoutDevice.end();
    if (!isKnown || rate > TQ_KRV::drVUHF_1M)
        return {};
    return ToDevice::convertDataRateFromXml(ToClient::convertDataRateClassFromClient(rate));
}

TQ_KORVE::eDATA_FORMAT deviceFormatOf(TQ_KRV::eDATA_FORMAT format)
{
    return ToDevice::convertDataFormatFromXml(ToClient::convertDataFormatFromClient(format));
}

bool isStream(TQ_KRV::eDATA_FORMAT format)
{
    return std::find(streams.begin(), streams.end(), format) != streams.end();
}

} // namespace installation
