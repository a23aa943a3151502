#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

/// `korvectl export`: the files of a record into a folder. What is there already is not fetched again. @throws Failure
ExitCode exportRecord(const CommandLine &line);

} // namespace korvectl
