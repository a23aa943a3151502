#pragma once

#include "installation/faults/contract.h"

class omniCallDescriptor;

namespace installation::faults
{

/// Whether a number is all that is needed to answer: what goes out besides is known to us then.
bool isAnswerable(const Operation &operation);

/// Gives @p call the result @p number, as if its servant had returned it, with empty values for what goes out besides.
void answer(omniCallDescriptor &call, Result result, unsigned number);

} // namespace installation::faults
