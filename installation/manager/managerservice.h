#pragma once

#include "installation/manager/managerconfiguration.h"
#include "installation/manager/managerlisteners.h"

#include "idl/cco.hh"

#include <memory>

namespace installation
{

/// The recorder manager of one host: finds the recorders that are registered at the central object service, and serves
/// `TQ_KRV::IF_KRV_c_KRV` under its object key, `TQ_KRV::IF_KORVE_Admin` under "KorveManagerAdmin", and
/// channels as ChannelService does.
///
/// Thread: any; needs no main thread.
class ManagerService
{
public:
    static constexpr const char *objectKey = "KorveManager";

    /// Starts to serve. @p poa lets its user choose the keys, its manager is activated by the caller, and the ORB
    /// outlives the service.
    /// @throws std::runtime_error when the state folder cannot be used.
    ManagerService(const ManagerConfiguration &configuration, PortableServer::POA_ptr poa, CCO::IF_CCO_c_ptr service,
                   ManagerListeners listeners = {});
    /// As stop().
    ~ManagerService();
    ManagerService(const ManagerService &) = delete;

    /// Refuses new calls, waits for those in progress as ServedObjects does, and ends all threads, which finish the calls
    /// that they are making. Nothing is served any more.
    void stop();

    /// A full reference to the main interface; the caller releases it.
    CORBA::Object_ptr reference() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace installation
