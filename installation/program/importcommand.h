#pragma once

#include "installation/program/commandline.h"

#include <chrono>

namespace installation
{

/// Has the recorder take in the files, one after the other, with a progress bar; prints "FILE: RECORD" for each.
///
/// Blocks. An interrupt (SIGINT) cancels the import that is running, and ends.
/// Needs a running OrbHandler. @p patience is how long the recorder may take to be there.
/// Returns the exit code: 0, or 1 when a file, which has been named with the reason, was not imported; 2 when there is
/// no such recorder.
int runImport(const CommandLine::Import &import, std::chrono::milliseconds patience = std::chrono::seconds(5));

} // namespace installation
