#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

/// `korvectl replay ...`. All throw Failure.
namespace korvectl
{

ExitCode startReplay(const CommandLine &line);
ExitCode pauseReplay(const CommandLine &line);
ExitCode continueReplay(const CommandLine &line);
ExitCode stopReplay(const CommandLine &line);
ExitCode showReplays(const CommandLine &line);

} // namespace korvectl
