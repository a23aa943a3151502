#pragma once

#include "installation/program/hostsettings.h"

#include <memory>

namespace installation
{

/// The services of one process: started in their order, registered at the central object service, and ended in the
/// reverse order.
///
/// Needs a running OrbHandler, and an event loop for what the manager shows in the value tree.  Thread: main.
class Services
{
public:
    /// Prints "ready ROLE HOST:PORT" for each service when it answers, and "standing by ROLE HOST:PORT: REASON" when
    /// another has its names.
    /// @throws std::exception with a text for people when one cannot start.
    Services(const QList<Role> &roles, const HostSettings &settings);
    ~Services();
    Services(const Services &) = delete;

    /// Runs the event loop of the application until it is ended; returns its exit code.
    /// @throws as the constructor when a service cannot begin after it has stood by.
    int run() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace installation
