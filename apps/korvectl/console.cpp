#include "apps/korvectl/console.h"

#include "apps/korvectl/displaywidth.h"

#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace korvectl
{

bool print(const QString &result)
{
    std::cout << result.toStdString() << std::flush;
    return std::cout.good();
}

void complain(const QString &sentence)
{
    std::cerr << "korvectl: " << printable(sentence).toStdString() << std::endl;
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

TerminalSize terminalSize()
{
    winsize size{};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
    return isKnown ? TerminalSize{size.ws_col, size.ws_row} : TerminalSize();
}

QString inRed(const QString &text)
{
    return hasColours() ? QStringLiteral("\x1b[31m%1\x1b[0m").arg(text) : text;
}

} // namespace korvectl
