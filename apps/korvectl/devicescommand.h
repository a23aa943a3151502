#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl devices`. @throws Failure
ExitCode listDevices(const CommandLine &line);

} // namespace korvectl
