#include "apps/korvectl/console.h"

#include "apps/korvectl/table.h"

#include "programs/printable.h"

#include <cerrno>
#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace korvectl
{

namespace
{

/// The `errno` of the first result that could not be written; 0 as long as all could.
int outputError = 0;

bool isWritten()
{
    if (!std::cout.flush() && outputError == 0)
        outputError = errno;
    return outputError == 0;
}

int sizeOr(int otherwise, const char *variable)
{
    bool isNumber = false;
    const int size = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber && size > 0 ? size : otherwise;
}

} // namespace

bool print(const QString &result)
{
    std::cout << result.toStdString();
    return isWritten();
}

ExitCode endOfOutput(ExitCode exitCode)
{
    const bool isDone = exitCode == ExitCode::Success || exitCode == ExitCode::Partial;
    if (isWritten() || outputError == EPIPE || !isDone)
        return exitCode;
    complain(QStringLiteral("The command was carried out, but its result could not be written: %1.")
                 .arg(reasonOf(outputError)));
    return ExitCode::Failed;
}

void complain(const QString &sentence)
{
    std::cerr << "korvectl: " << programs::printable(sentence).toStdString() << std::endl;
}

void complain(const Failure &failure)
{
    complain(QString::fromUtf8(failure.what()));
}

bool hasColours()
{
    static const bool has = ::isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
                            qgetenv("TERM") != QByteArrayLiteral("dumb");
    return has;
}

TerminalSize terminalSize(int descriptor)
{
    winsize told{};
    const bool isKnown = ::ioctl(descriptor, TIOCGWINSZ, &told) == 0 && told.ws_col > 0 && told.ws_row > 0;
    const TerminalSize size = isKnown ? TerminalSize{told.ws_col, told.ws_row} : TerminalSize();
    return {sizeOr(size.columns, "COLUMNS"), sizeOr(size.rows, "LINES")};
}

int resultWidth()
{
    return sizeOr(::isatty(STDOUT_FILENO) == 1 ? terminalSize(STDOUT_FILENO).columns : Table::anyWidth, "COLUMNS");
}

QString inRed(const QString &text)
{
    return hasColours() ? QStringLiteral("\x1b[31m%1\x1b[0m").arg(text) : text;
}

} // namespace korvectl
