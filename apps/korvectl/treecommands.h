#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

// All throw Failure.

/// `korvectl tree ls [PATH]`
ExitCode listTree(const CommandLine &line);
/// `korvectl tree get PATH`
ExitCode getFromTree(const CommandLine &line);
/// `korvectl tree watch [PATH]`
ExitCode watchTree(const CommandLine &line);

} // namespace korvectl
