#include "apps/korvectl/commandline.h"
#include "apps/korvectl/commands.h"
#include "apps/korvectl/console.h"

#include "coresupport/errorhandler.h"

#include <QCoreApplication>

#include <csignal>

using namespace korvectl;

namespace
{

ExitCode carryOut(const CommandLine &line, int argc, char **argv)
{
    ErrorHandler::Instance().setTraceMask(line.traceMask);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korvectl"));
    try {
        return run(line);
    } catch (const Failure &failure) {
        complain(failure);
        return failure.exitCode;
    }
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // as the ORB would have it, but also for what needs none
    int exitCode = 0;
    const auto line = CommandLine::parse(argc, argv, exitCode);
    return static_cast<int>(endOfOutput(line ? carryOut(*line, argc, argv) : static_cast<ExitCode>(exitCode)));
}
