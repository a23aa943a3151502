#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

/// `korvectl record start` and `korvectl record stop`. Both throw Failure.
namespace korvectl
{

ExitCode startRecording(const CommandLine &line);
ExitCode stopRecording(const CommandLine &line);

} // namespace korvectl
