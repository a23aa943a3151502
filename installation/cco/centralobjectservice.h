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
    /// As stop().
    ~CentralObjectService();
    CentralObjectService(const CentralObjectService &) = delete;
    CentralObjectService &operator=(const CentralObjectService &) = delete;

    /// Refuses new calls, waits for those in progress as ServedObjects does, and ends the threads of the service, which
    /// finish the calls that they are making. Nothing is served any more.
    void stop();

    /// A full reference to the naming object; the caller releases it.
    CORBA::Object_ptr reference() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace installation
