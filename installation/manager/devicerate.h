#pragma once

#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <optional>

namespace installation
{

/// A data-rate class of a client in the numbering of the devices; without result for one that passes no remote
/// interface.
std::optional<TQ_KORVE::eDATARATE_CLASS> deviceRateOf(TQ_KRV::eDATARATE_CLASS rate);
TQ_KORVE::eDATA_FORMAT deviceFormatOf(TQ_KRV::eDATA_FORMAT format);

/// Whether data of that format are a stream of samples, which is all that a channel carries.
bool isStream(TQ_KRV::eDATA_FORMAT format);

} // namespace installation
