#pragma once

#include "apps/korvectl/syntax.h"

namespace korvectl::syntax
{

/// `record`, with all that stands below it.
void describeRecord(CLI::App &parent, CommandLine &line);

} // namespace korvectl::syntax
