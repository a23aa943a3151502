#pragma once

#include "apps/korvectl/syntax.h"

namespace korvectl::syntax
{

/// `time get` and `time set`.
void describeTime(CLI::App &parent, CommandLine &line);
void describeErrors(CLI::App &parent, CommandLine &line);

} // namespace korvectl::syntax
