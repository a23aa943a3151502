#pragma once

#include "apps/korvectl/failure.h"

namespace korvectl
{

/// A result, to standard output. False when nobody reads it any more.
bool print(const QString &result);
/// A sentence for people, to standard error, behind the name of the program.
void complain(const QString &sentence);
void complain(const Failure &failure);

/// @p text in red where standard output is a terminal and NO_COLOR is not set; else as it is.
QString inRed(const QString &text);

} // namespace korvectl
