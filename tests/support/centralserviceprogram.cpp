#include "installation/cco/centralobjectservice.h"
#include "orbconnection/orbhandler.h"

#include <QCoreApplication>

#include <iostream>

using namespace CorbaCommon;
using namespace std::chrono_literals;

/// ADDRESS SUBSYSTEM WORKSTATION [HOST OF A PEER]...: a central object service at port 8003 of ADDRESS.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = arguments.value(1);
    settings.ports = {OrbSettings::centralServicePort};
    OrbHandler::configure(settings);
    const OrbHandler &orb = OrbHandler::Instance();
    if (!orb.isRunning())
        return 1;

    installation::CentralObjectConfiguration configuration;
    configuration.subsystemName = arguments.value(2).toStdString();
    configuration.workstationName = arguments.value(3).toStdString();
    configuration.subsystems = {{configuration.subsystemName, {configuration.workstationName}}};
    for (int i = 4; i < arguments.size(); ++i)
        configuration.peers.push_back({arguments[i].toStdString()});
    configuration.timing = {.probeInterval = 50ms, .answerLimit = 500ms, .callbackLimit = 1000ms};
    const installation::CentralObjectService service(configuration, orb.keyedPoa());
    std::cout << "ready cco " << settings.address.toStdString() << ":8003" << std::endl;
    return QCoreApplication::exec();
}
