#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl completion SHELL`: the script.
ExitCode printCompletionScript(const CommandLine &line);

/// What that script asks: prints what may stand in the place of the last word, one text per line. The names of an
/// installation come from its services, as far as they answer within a second.
ExitCode completeLine(const CommandLine &line);

} // namespace korvectl
