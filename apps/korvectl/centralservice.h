#pragma once

#include "apps/korvectl/deadline.h"
#include "apps/korvectl/failure.h"

#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <QStringList>

namespace korvectl
{

/// The way into an installation: the ORB of this process, and the central object service.
///
/// Configures that ORB, so there is one at most.
/// Thread: main; each call blocks, at most for the time that it is given.  Errors: Failure, or what the ORB raises.
class CentralService
{
public:
    /// @throws Failure when KORVE_CCO is no address, or this host does not have the one that KORVE_ADDRESS says.
    explicit CentralService(std::chrono::milliseconds timeout);

    /// "HOST:PORT"
    QString address() const;
    /// Waits until the service answers, as one that is just starting will. @throws Failure
    QString localSubsystem(const Deadline &deadline) const;
    QStringList subsystems(std::chrono::milliseconds limit) const;
    /// The service itself, whose calls end after @p limit. The caller releases it.
    CCO::IF_CCO_c_ptr reference(std::chrono::milliseconds limit) const;
    /// The values of the name @p path, or the names below it if it ends in "/".
    QStringList values(const QString &path, std::chrono::milliseconds limit) const;
    /// What has the name @p path, nil for nothing. The caller releases it.
    CORBA::Object_ptr resolve(const QString &path, std::chrono::milliseconds limit) const;
    /// The manager of @p subsystem, empty for the local one, as it is registered: it need not answer. Nil for none. The
    /// caller releases it.
    TQ_KRV::IF_KRV_c_KRV_ptr manager(const QString &subsystem, std::chrono::milliseconds limit) const;
    /// The recorder @p device of @p subsystem, which is not empty, as it is registered: it need not answer. Nil for none. The
    /// caller releases it.
    TQ_KORVE::IF_Control_ptr recorder(const QString &subsystem, const QString &device,
                                      std::chrono::milliseconds limit) const;
    /// The name of the manager.
    static QString managerPath(const QString &subsystem);
    /// The full name of what registers as @p name in @p subsystem, as any central object service resolves it.
    static QString pathOf(const QString &subsystem, const QString &name);
    /// The words for a manager that was looked for in vain.
    Failure noManager(const QString &subsystem, const Deadline &deadline) const;
};

} // namespace korvectl
