#include "installation/faults/faults.h"
#include "installation/program/commandline.h"
#include "installation/program/hostsettings.h"
#include "installation/program/importcommand.h"
#include "installation/program/services.h"
#include "installation/program/shutdownsignals.h"
#include "installation/recorder/diskroom.h"

#include "orbconnection/orbhandler.h"

#include <QCoreApplication>

#include <sys/prctl.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>

using namespace installation;
using CorbaCommon::OrbHandler;

namespace
{

constexpr int failure = 1;

/// Nothing when the script is empty.
std::unique_ptr<faults::Faults> faultsOf(const faults::FaultScript &script, const CommandLine &line,
                                         const HostSettings &settings)
{
    if (script.isEmpty())
        return {};
    faults::FaultySide side{{}, settings.deviceId().toStdString(), recorder::setDiskError};
    for (const Role role : line.roles)
        side.roles.insert(nameOf(role).toStdString());
    return std::make_unique<faults::Faults>(script, side);
}

int run(const CommandLine &line)
{
    const HostSettings settings(line);
    const faults::FaultScript script = faults::FaultScript::read(line.import ? QString() : settings.faultsFile());
    std::optional<ShutdownSignals> signals;
    if (!line.import)
        signals.emplace(); // before the ORB has threads
    OrbHandler::configure(settings.orb());
    if (!OrbHandler::Instance().isRunning())
        return failure; // it has said why
    if (line.import)
        return runImport(*line.import);
    const auto faults = faultsOf(script, line, settings); // before the services, so that they never answer without
    const Services services(line.roles, settings);
    return services.run();
}

} // namespace

int main(int argc, char **argv)
{
    int exitCode = 0;
    const auto line = CommandLine::parse(argc, argv, exitCode);
    if (!line)
        return exitCode;
    if (line->endsWithParent)
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korve-installation"));
    try {
        exitCode = run(*line);
    } catch (const CORBA::Exception &error) {
        std::cerr << "korve-installation: " << error._name() << std::endl;
        exitCode = failure;
    } catch (const std::exception &error) {
        std::cerr << "korve-installation: " << error.what() << std::endl;
        exitCode = failure;
    }
    return exitCode;
}
