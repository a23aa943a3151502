#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// Does what the command line says. @throws Failure
ExitCode run(const CommandLine &line);

} // namespace korvectl
