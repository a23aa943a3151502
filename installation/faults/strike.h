#pragma once

#include "installation/faults/faultscript.h"

class omniCallDescriptor;
class omniServant;

namespace installation::faults
{

/// Ends @p call of @p servant as @p action says, on the thread that is to serve it. Returns when there is a result, and
/// throws what the caller is to get.
void strike(const CallAction &action, omniCallDescriptor &call, omniServant &servant);

} // namespace installation::faults
