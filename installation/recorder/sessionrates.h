#pragma once

#include "installation/recorder/sessiontable.h"

#include "idl/korve.hh"

namespace installation::recorder
{

// The sessions of a recorder by data-rate class. Any class may have all that are free: the limits are the recorder's.

/// Each class, with how many recordings and replays more there may be. The caller owns it.
TQ_KORVE::seqDataRateClasses *availableRates(const SessionTable &sessions);
/// Each class that is in use, with how many sessions it has. The caller owns it.
TQ_KORVE::seqOccupiedDataRateClasses *occupiedRates(const SessionTable &sessions);

} // namespace installation::recorder
