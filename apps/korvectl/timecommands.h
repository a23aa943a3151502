#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

/// `korvectl time ...`: the clock of a device. Both throw Failure.
namespace korvectl
{

ExitCode getTime(const CommandLine &line);
ExitCode setTime(const CommandLine &line);

} // namespace korvectl
