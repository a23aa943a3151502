#pragma once

#include "installation/cco/centralobjectconfiguration.h"

#include <omniORB4/CORBA.h>

#include <memory>

namespace installation
{

/// The central object service of one host: keeps the names of its subsystem, asks its peers for those of the others,
/// drops what no longer answers and tells callbacks of it.
///
/// It serves `CCO::IF_CCO_c` under the key "CCO" and `CCO::IF_CCO_c_Update` under "CCOUpdate". The registry is not kept
/// on disk: services repeat their registration, so a new central service fills itself.
/// Thread: any; nothing waits for a main thread.
class CentralObjectService
{
public:
    /// Starts to serve. @p poa is the ORB's "omniINSPOA", whose manager the caller activates. The ORB must outlive the
    /// service.
    /// @throws std::invalid_argument for a peer that cannot be an address, PortableServer::POA::ObjectAlreadyActive
    /// when the process has such a service already.
    CentralObjectService(CentralObjectConfiguration configuration, PortableServer::POA_ptr poa);
    /// Stops to serve; waits, bounded, for calls that the service itself is making.
    ~CentralObjectService();
    CentralObjectService(const CentralObjectService &) = delete;
    CentralObjectService &operator=(const CentralObjectService &) = delete;

    /// A full reference to the naming object; the caller releases it.
    CORBA::Object_ptr reference() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace installation
