#pragma once

#include "installation/recorder/recordererror.h"

namespace installation::recorder
{

/// Traces @p error as the end of @p operation, and is what the caller gets to see of it.
TQ_KORVE::exKorve deviceFailure(const char *operation, const RecorderError &error);

} // namespace installation::recorder
