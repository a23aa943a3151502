#pragma once

#include "idl/cco.hh"
#include "installation/cco/centralobjectconfiguration.h"

#include <mutex>

namespace installation
{

/// The central object service of another host, and what it last said of itself.
class Peer
{
public:
    struct State {
        bool asked = false;   ///< answered, or was found silent, at least once
        bool answers = false; ///< when last asked; the members below are from then
        std::string subsystem;
        std::string workstation;
        std::vector<std::string> workstations; ///< configured for its subsystem
    };

    /// Makes no call.
    /// @throws std::invalid_argument when @p address cannot be an address.
    Peer(CORBA::ORB_ptr orb, const CentralObjectConfiguration::Peer &address, std::chrono::milliseconds answerLimit);

    /// Asks it who it is. Blocks for the call limit.
    void ask();
    /// It has just failed a caller: not to be used until it answers again.
    void setLost();

    State state() const;
    const std::string &name() const { return displayName; }
    CCO::IF_CCO_c_ptr service() const { return reference; }

private:
    void setState(State next);

    const std::string displayName;
    CCO::IF_CCO_c_var reference; // never changes after construction
    mutable std::mutex mutex;    // guards the state; not held during a call
    State current;
};

} // namespace installation
