#pragma once

#include "apps/korvectl/syntax.h"

namespace korvectl::syntax
{

/// `replay`, with all that stands below it.
void describeReplay(CLI::App &parent, CommandLine &line);
void describeSpectrum(CLI::App &parent, CommandLine &line);
void describeExport(CLI::App &parent, CommandLine &line);
/// `time get` and `time set`.
void describeTime(CLI::App &parent, CommandLine &line);
void describeErrors(CLI::App &parent, CommandLine &line);

} // namespace korvectl::syntax
