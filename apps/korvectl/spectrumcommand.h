#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl spectrum`: as a picture, in letters, or as numbers. @throws Failure
ExitCode showSpectrum(const CommandLine &line);

} // namespace korvectl
