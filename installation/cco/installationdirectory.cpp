#include "installation/cco/installationdirectory.h"

#include "installation/cco/indications.h"
#include "installation/cco/peerdirectory.h"

#include <algorithm>

namespace installation
{

namespace
{

using Names = std::vector<std::string>;

bool contains(const Names &names, const std::string &name)
{
    return std::ranges::any_of(names, [&](const std::string &known) { return sameName(known, name); });
}

void add(Names &names, const std::string &name)
{
    if (!name.empty() && !contains(names, name))
        names.push_back(name);
}

void add(Names &names, const Names &more)
{
    for (const std::string &name : more)
        add(names, name);
}

} // namespace

InstallationDirectory::InstallationDirectory(const CentralObjectConfiguration &configuration,
                                             const PeerDirectory &peers, const Indications &indications)
    : configuration(configuration), peers(peers), indications(indications)
{
}

bool InstallationDirectory::isOwnSubsystem(const std::string &name) const
{
    return name.empty() || name == "LocalSubSystem" || sameName(name, configuration.subsystemName);
}

Names InstallationDirectory::subsystems() const
{
    Names names;
    add(names, configuration.subsystemName);
    for (const auto &subsystem : configuration.subsystems)
        add(names, subsystem.name);
    for (const Peer::State &peer : peers.answering())
        add(names, peer.subsystem);
    return names;
}

Names InstallationDirectory::workstations(const std::string &subsystem) const
{
    Names names;
    const bool isOwn = isOwnSubsystem(subsystem);
    if (isOwn)
        add(names, configuration.workstationName);
    add(names, configuredWorkstations(subsystem));
    for (const Peer::State &peer : peers.answering()) {
        if (isOwn ? !isOwnSubsystem(peer.subsystem) : !sameName(peer.subsystem, subsystem))
            continue;
        add(names, peer.workstation);
        add(names, peer.workstations);
    }
    return names;
}

Names InstallationDirectory::configuredWorkstations(const std::string &subsystem) const
{
    const std::string &wanted = isOwnSubsystem(subsystem) ? configuration.subsystemName : subsystem;
    Names names;
    for (const auto &known : configuration.subsystems)
        if (sameName(known.name, wanted))
            add(names, known.workstations);
    return names;
}

bool InstallationDirectory::isOnSystemWorkstation() const
{
    return contains(configuration.systemWorkstations, configuration.workstationName);
}

std::optional<bool> InstallationDirectory::isRemoteServiceThere(const std::string &subsystem) const
{
    if (!contains(subsystems(), subsystem))
        return std::nullopt;
    return std::ranges::any_of(peers.answering(),
                               [&](const Peer::State &peer) { return sameName(peer.subsystem, subsystem); });
}

std::optional<bool> InstallationDirectory::isWorkstationThere(const std::string &subsystem,
                                                              const std::string &workstation) const
{
    if (!contains(workstations(subsystem), workstation))
        return std::nullopt;
    return sameName(workstation, configuration.workstationName) || indications.contains(workstation) ||
           std::ranges::any_of(peers.answering(),
                               [&](const Peer::State &peer) { return sameName(peer.workstation, workstation); });
}

} // namespace installation
