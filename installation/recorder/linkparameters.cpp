#include "installation/recorder/linkparameters.h"

#include <QVector>

#include <memory>

namespace installation::recorder
{

namespace
{

LLDCmodule::seqIfDescription *toDescriptions(const QVector<SampleLink::Address> &addresses)
{
    auto descriptions = std::make_unique<LLDCmodule::seqIfDescription>();
    descriptions->length(static_cast<CORBA::ULong>(addresses.size()));
    CORBA::ULong number = 0;
    for (const SampleLink::Address &address : addresses) {
        LLDCmodule::struIfDescription &description = (*descriptions)[number++];
        description.interfaceNumber = static_cast<CORBA::ULong>(address.kind);
        description.address = address.host;
        description.port = address.port;
    }
    return descriptions.release();
}

} // namespace

SampleLink::Address toAddress(const LLDCmodule::struConnectionParams &params)
{
    if (params.interfaceKind != LLDCmodule::ifTCP && params.interfaceKind != LLDCmodule::ifUDP)
        throw LinkError(LLDCmodule::ekIllegalIf, QStringLiteral("this recorder has TCP and UDP only"));
    const bool connects = params.address != 0;
    if (params.port > 0xffff || (connects && params.port == 0))
        throw LinkError(LLDCmodule::ekIllegalIf, QStringLiteral("%1 is no port").arg(params.port));
    return {params.interfaceKind, params.address, static_cast<quint16>(params.port)};
}

LLDCmodule::struConnectionParams toParameters(const SampleLink::Address &address, quint64 connectionId)
{
    LLDCmodule::struConnectionParams params;
    params.interfaceKind = address.kind;
    params.address = address.host;
    params.port = address.port;
    params.parameter = connectionId;
    return params;
}

LLDCmodule::seqIfDescription *interfaceUsed(const std::optional<SampleLink::Address> &address)
{
    return toDescriptions(address ? QVector{*address} : QVector<SampleLink::Address>());
}

LLDCmodule::seqIfDescription *interfacesAvailable(quint32 host)
{
    return toDescriptions({{LLDCmodule::ifTCP, host, 0}, {LLDCmodule::ifUDP, host, 0}});
}

} // namespace installation::recorder
