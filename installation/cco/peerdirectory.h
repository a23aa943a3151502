#pragma once

#include "installation/cco/namepath.h"
#include "installation/cco/peer.h"
#include "installation/cco/prober.h"

#include <memory>

namespace installation
{

/// The services of the other hosts: who they are, as of the last probe, and the way to the names that they keep.
///
/// A call goes only to services that answered lately, or were never asked, and only for what they keep themselves; so
/// a dead one costs nothing, and two that know each other never ask in a circle.
class PeerDirectory
{
public:
    PeerDirectory(CORBA::ORB_ptr orb, const CentralObjectConfiguration &configuration);

    std::vector<Prober::Target> targets() const;

    /// Those that answer.
    std::vector<Peer::State> answering() const;

    /// Asks the services of @p path's subsystem; nil when none of them knows it. The caller releases it.
    /// @throws CCO::IF_CCO_c_Naming::InvalidType when the name has values.
    CORBA::Object_ptr resolve(const NamePath &path) const;
    std::vector<std::string> resolveValues(const NamePath &path) const;

private:
    /// Calls @p ask for one service of @p subsystem after the other, until it returns true.
    template <typename Ask> void askInTurn(const std::string &subsystem, Ask ask) const;

    std::vector<std::unique_ptr<Peer>> peers;
};

} // namespace installation
