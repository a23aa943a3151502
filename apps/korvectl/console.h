#pragma once

#include "apps/korvectl/failure.h"

namespace korvectl
{

/// A result, to standard output. False when it cannot be written, such as when nobody reads it any more.
bool print(const QString &result);
/// How the program ends that would end with @p exitCode: otherwise where results could not be written, which is said then.
/// Whoever has stopped reading has had enough, though.
ExitCode endOfOutput(ExitCode exitCode);
/// A sentence for people, to standard error, behind the name of the program.
void complain(const QString &sentence);
void complain(const Failure &failure);

/// Whether standard output is a terminal and NO_COLOR is not set.
bool hasColours();
/// In letters.
struct TerminalSize {
    int columns = 80;
    int rows = 24;
};
/// As COLUMNS and LINES say; else that of the terminal, or a usual one where @p descriptor is none.
TerminalSize terminalSize(int descriptor);

/// How many columns a line of results may have: as COLUMNS says, else those of the terminal; Table::anyWidth for results
/// that go elsewhere.
int resultWidth();

/// @p text in red where there are colours; else as it is.
QString inRed(const QString &text);

} // namespace korvectl
