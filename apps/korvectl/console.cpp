#include "apps/korvectl/console.h"

#include <iostream>

#include <unistd.h>

namespace korvectl
{

namespace
{

bool hasColours()
{
    static const bool has = ::isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
                            qgetenv("TERM") != QByteArrayLiteral("dumb");
    return has;
}

} // namespace

bool print(const QString &result)
{
    std::cout << result.toStdString() << std::flush;
    return std::cout.good();
}

void complain(const QString &sentence)
{
    std::cerr << "korvectl: " << sentence.toStdString() << std::endl;
}

void complain(const Failure &failure)
{
    complain(QString::fromUtf8(failure.what()));
}

QString inRed(const QString &text)
{
    return hasColours() ? QStringLiteral("\x1b[31m%1\x1b[0m").arg(text) : text;
}

} // namespace korvectl
