#pragma once

#include "installation/cco/centralobjectconfiguration.h"

#include <optional>

namespace installation
{

class Indications;
class PeerDirectory;

/// Who belongs to the installation: what the configuration says, and what the peers last said. Borrows all three.
/// An empty subsystem name and "LocalSubSystem" mean the service's own. Names come without doublets, the own one first.
class InstallationDirectory
{
public:
    InstallationDirectory(const CentralObjectConfiguration &configuration, const PeerDirectory &peers,
                          const Indications &indications);

    bool isOwnSubsystem(const std::string &name) const;
    std::vector<std::string> subsystems() const;
    /// Nothing for an unknown subsystem.
    std::vector<std::string> workstations(const std::string &subsystem) const;
    std::vector<std::string> configuredWorkstations(const std::string &subsystem) const;
    bool isOnSystemWorkstation() const;

    /// Whether a peer of that subsystem answers; without result for an unknown one.
    std::optional<bool> isRemoteServiceThere(const std::string &subsystem) const;
    /// Whether that workstation is up: the own one, one whose service answers, or one that has announced itself.
    /// Without result for an unknown one.
    std::optional<bool> isWorkstationThere(const std::string &subsystem, const std::string &workstation) const;

private:
    const CentralObjectConfiguration &configuration;
    const PeerDirectory &peers;
    const Indications &indications;
};

} // namespace installation
