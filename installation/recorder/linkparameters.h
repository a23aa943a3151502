#pragma once

#include "installation/recorder/samplelink.h"

#include <optional>

namespace installation::recorder
{

// The link of a session in the structures of its contract.

/// Where @p params point to.
/// @throws LinkError with `ekIllegalIf` for what is neither TCP nor UDP, or no port.
SampleLink::Address toAddress(const LLDCmodule::struConnectionParams &params);
LLDCmodule::struConnectionParams toParameters(const SampleLink::Address &address, quint64 connectionId);
/// The link of a session, if it has one. The number of an interface is that of its kind. The caller owns it.
LLDCmodule::seqIfDescription *interfaceUsed(const std::optional<SampleLink::Address> &address);
/// What a session of a recorder at @p host may use. The caller owns it.
LLDCmodule::seqIfDescription *interfacesAvailable(quint32 host);

} // namespace installation::recorder
