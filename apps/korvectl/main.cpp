#include "apps/korvectl/commandline.h"
#include "apps/korvectl/commands.h"
#include "apps/korvectl/console.h"

#include "coresupport/errorhandler.h"

#include <QCoreApplication>

using namespace korvectl;

int main(int argc, char **argv)
{
    int exitCode = 0;
    const auto line = CommandLine::parse(argc, argv, exitCode);
    if (!line)
        return exitCode;
    ErrorHandler::Instance().setTraceMask(line->traceMask);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korvectl"));
    try {
        return static_cast<int>(run(*line));
    } catch (const Failure &failure) {
        complain(failure);
        return static_cast<int>(failure.exitCode);
    }
}
