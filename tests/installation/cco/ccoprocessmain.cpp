#include "installation/cco/centralobjectservice.h"
#include "tests/installation/cco/testorb.h"

#include <sys/prctl.h>

#include <csignal>
#include <iostream>

using namespace std::chrono_literals;

/// SUBSYSTEM WORKSTATION [PORT OF A PEER]...: serves until its standard input ends.
int main(int argc, char **argv)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    installation::CentralObjectConfiguration configuration;
    configuration.subsystemName = argc > 1 ? argv[1] : "";
    configuration.workstationName = argc > 2 ? argv[2] : "";
    configuration.subsystems = {{configuration.subsystemName, {configuration.workstationName + "-spare"}}};
    configuration.timing = {.probeInterval = 20ms, .answerLimit = 500ms, .callbackLimit = 2000ms};
    for (int i = 3; i < argc; ++i)
        configuration.peers.push_back({"127.0.0.1", static_cast<std::uint16_t>(std::stoi(argv[i]))});

    const TestOrb &orb = TestOrb::instance();
    const installation::CentralObjectService service(configuration, orb.insPoa());
    const CORBA::Object_var reference = service.reference();
    std::cout << "ready cco 127.0.0.1:" << orb.port() << ' '
              << CORBA::String_var(orb.orb()->object_to_string(reference)).in() << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
    }
    return 0;
}
