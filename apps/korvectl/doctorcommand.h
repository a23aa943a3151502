#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl doctor`: NotReachable when a link is broken. @throws Failure
ExitCode examine(const CommandLine &line);

} // namespace korvectl
