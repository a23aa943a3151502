#pragma once

#include "apps/korvectl/failure.h"

namespace korvectl
{

/// A result, to standard output. False when nobody reads it any more.
bool print(const QString &result);
/// A sentence for people, to standard error, behind the name of the program.
void complain(const QString &sentence);
void complain(const Failure &failure);

/// Whether standard output is a terminal and NO_COLOR is not set.
bool hasColours();
/// In letters; that of a usual terminal, where standard output is none.
struct TerminalSize {
    int columns = 80;
    int rows = 24;
};
TerminalSize terminalSize();

/// @p text in red where there are colours; else as it is.
QString inRed(const QString &text);

} // namespace korvectl
