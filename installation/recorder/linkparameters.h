#pragma once

#include "installation/recorder/samplelink.h"

#include <QVector>

namespace installation::recorder
{

// The link of a session in the structures of its contract.

/// Where @p params point to.
/// @throws LinkError with `ekIllegalIf` for what is neither TCP nor UDP, or no port.
SampleLink::Address toAddress(const LLDCmodule::struConnectionParams &params);
LLDCmodule::struConnectionParams toParameters(const SampleLink::Address &address, quint64 connectionId);
/// One entry per address; the number of an interface is that of its kind. The caller owns it.
LLDCmodule::seqIfDescription *toDescriptions(const QVector<SampleLink::Address> &addresses);

} // namespace installation::recorder
