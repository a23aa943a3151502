#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

/// `korvectl record ...`: one record, by its device and its id. All throw Failure.
namespace korvectl
{

ExitCode showRecord(const CommandLine &line);
ExitCode setComment(const CommandLine &line);
ExitCode setDeletable(const CommandLine &line);
ExitCode copyRecord(const CommandLine &line);
ExitCode deleteRecord(const CommandLine &line);

} // namespace korvectl
