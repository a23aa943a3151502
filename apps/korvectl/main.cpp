#include "apps/korvectl/commandline.h"
#include "apps/korvectl/completecommand.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/devicescommand.h"
#include "apps/korvectl/doctorcommand.h"
#include "apps/korvectl/recordscommand.h"
#include "apps/korvectl/treecommands.h"

#include "coresupport/errorhandler.h"

#include <QCoreApplication>

using namespace korvectl;

namespace
{

ExitCode run(const CommandLine &line)
{
    switch (line.command) {
    case Command::Devices:
        return listDevices(line);
    case Command::Records:
        return listRecords(line);
    case Command::TreeList:
        return listTree(line);
    case Command::TreeGet:
        return getFromTree(line);
    case Command::TreeWatch:
        return watchTree(line);
    case Command::Doctor:
        return examine(line);
    case Command::Completion:
        return printCompletionScript();
    case Command::Complete:
        return completeLine(line);
    }
    return ExitCode::Usage;
}

} // namespace

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
