#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl errors NUMBER`: asks nobody. @throws Failure for a number of which nothing is known.
ExitCode explainError(const CommandLine &line);

} // namespace korvectl
