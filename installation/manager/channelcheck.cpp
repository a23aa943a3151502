#include "installation/manager/channelcheck.h"

#include "installation/manager/devicerate.h"
#include "installation/manager/receiveraddress.h"

#include <limits>

namespace installation
{

namespace
{

constexpr quint64 greatestSampleRate = std::numeric_limits<CORBA::ULong>::max();
constexpr quint16 greatestSampleBytes = 16; // two numbers of 64 bits

bool hasNetwork(TQ_KRV::interfaceTypeEnum type)
{
    return type == TQ_KRV::TCP_IF || type == TQ_KRV::UDP_IF;
}

void checkInterface(const ChannelSettings &settings)
{
    const bool hasManager = !settings.channelManager.isEmpty();
    const bool hasAddress = !settings.receiverAddress.isEmpty();
    if (!hasManager && !hasAddress)
        refuse(TQ_KRV::Invalid_Interface, "a channel needs a channel manager or an address");
    if (!hasManager && !hasNetwork(settings.interfaceType))
        refuse(TQ_KRV::Invalid_Interface, "only TCP and UDP go without a channel manager");
    if (hasAddress && hasNetwork(settings.interfaceType) && !ReceiverAddress::from(settings.receiverAddress))
        refuse(TQ_KRV::Invalid_Interface, "the address is not HOST:PORT with an IPv4 address");
}

} // namespace

void checkSettings(const ChannelSettings &settings)
{
    checkInterface(settings);
    const bool isAdditionalKnown = !settings.additionalRate || deviceRateOf(*settings.additionalRate);
    if (!deviceRateOf(settings.rate) || !isAdditionalKnown)
        refuse(TQ_KRV::DataRateClass_Unknown, "no recorder knows this class of data rates");
    if (settings.sampleRate > greatestSampleRate)
        refuse(TQ_KRV::DataRateClass_Unknown, "no class has so many samples per second");
    if (!isStream(settings.format))
        refuse(TQ_KRV::DataFormat_Unknown, "data of this format are no stream of samples");
    if (settings.sampleBytes > greatestSampleBytes)
        refuse(TQ_KRV::DataFormat_Unknown, "no format has samples of so many bytes");
}

void refuse(TQ_KRV::eGenKind kind, const char *reason)
{
    throw TQ_KRV::exGen(kind, reason);
}

} // namespace installation
