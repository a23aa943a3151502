#pragma once

#include "installation/cco/callbacklist.h"
#include "installation/cco/indications.h"
#include "installation/cco/installationdirectory.h"
#include "installation/cco/peerdirectory.h"
#include "installation/cco/registrar.h"

namespace installation
{

/// What the servants of one central object service share. It lives as long as the last call to one of them.
class CentralObjectParts
{
public:
    /// @throws std::invalid_argument for a peer that cannot be an address.
    CentralObjectParts(CORBA::ORB_ptr orb, CentralObjectConfiguration configuration);

    void start();
    /// Ends what runs in the background; waits, bounded, for what is under way.
    void stop();

    const CentralObjectConfiguration configuration;
    CallbackList callbacks;
    Registry registry;
    Registrar registrar;
    PeerDirectory peers;
    Indications indications;
    const InstallationDirectory directory;
    Prober prober;

private:
    std::vector<Prober::Target> targets();
    void addRegistered(std::vector<Prober::Target> &targets);
    void addCallbacks(std::vector<Prober::Target> &targets);
};

} // namespace installation
