#pragma once

#include "apps/korvectl/doctor.h"

namespace korvectl
{

/// Finds out by a plain TCP connection what is at the address of @p link, which did not answer @p howLong, and fills in
/// complaint and remedy. Blocks, at most for a second.
void diagnoseSilence(Link &link, const QString &howLong);

} // namespace korvectl
