#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl records [DEVICE]`. @throws Failure
ExitCode listRecords(const CommandLine &line);

} // namespace korvectl
