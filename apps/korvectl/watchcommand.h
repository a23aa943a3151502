#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl watch`: until it is interrupted, or told so much. @throws Failure
ExitCode watchStates(const CommandLine &line);

} // namespace korvectl
