#pragma once

#include "idl/cco.hh"
#include "orbconnection/orbsettings.h"

#include <QStringList>

#include <memory>

namespace CorbaCommon
{
/// The one ORB of the process, and its way to the central object service.
///
/// Starts on first use and serves by threads of its own, never by the main thread. Ends with the application object, when
/// that has ended the way to the main thread; a program without one calls shutdown() before its end. Messages may have up to 512 MiB.
/// Calls that take too long end with `CORBA::TRANSIENT`. Arguments of the program that begin with "-ORB" are for the
/// ORB and beat the settings; a reference given by "-ORBInitRef CCO=..." is the central object service.
/// Thread: any.  Errors: an ORB that cannot start, also since the central object service has no possible address, is
/// traced and leaves isRunning() false, every reference nil.
class ORBCONNECTION_EXPORT OrbHandler
{
public:
    static OrbHandler &Instance();
    /// Settings other than those of the environment. False, with a trace, when the ORB runs already.
    static bool configure(const OrbSettings &settings);

    OrbHandler(const OrbHandler &) = delete;
    OrbHandler &operator=(const OrbHandler &) = delete;

    /// Ends the ORB, after the calls that it is serving; every reference of the process is dead then. For good. Not from
    /// within such a call.
    void shutdown();

    /// For all calls from now on, also those that have to connect first.
    void setCallTimeout(std::chrono::milliseconds limit);
    /// For the part of a call that connects; a shorter limit of calls holds for both.
    void setConnectTimeout(std::chrono::milliseconds limit);

    /// Whether the central object service answers now. Blocks, at most for the connect time-out.
    bool CCOIsAvailable();
    /// As CCOIsAvailable(), up to @p tries times, @p pauseMs apart.
    bool ConnectToCCO(int tries, int pauseMs);
    /// Borrowed, valid until shutdown(); nil when the service did not answer when it was last asked.
    CCO::IF_CCO_c_ptr GetCCO() const;

    // The next four ask the service and block, at most for the call time-out.

    /// Empty, with a trace, when there is no answer.
    QString GetSubSystemName();
    QStringList GetAllSubsystems();
    /// Names are compared without case; empty for a workstation that no subsystem has.
    QString GetSubsystemOfWorkstation(const QString &workstation);
    /// What the central object service of @p workstation (empty: the local one) has at @p path; the caller releases it.
    /// Throws what the ORB raises, CORBA::INV_OBJREF for a text that cannot be a workstation.
    CORBA::Object_ptr ResolveInterfaceViaCCO(const char *path, const QString &workstation);

    /// A reference of its own to the central object service, whose calls end after @p limit; the caller releases it.
    CCO::IF_CCO_c_ptr centralService(std::chrono::milliseconds limit) const;

    bool isRunning() const;
    const OrbSettings &settings() const;
    /// All borrowed. Both adapters are active; objects of keyedPoa() get the key that they are activated with.
    CORBA::ORB_ptr orb() const;
    PortableServer::POA_ptr rootPoa() const;
    PortableServer::POA_ptr keyedPoa() const;

private:
    explicit OrbHandler(const OrbSettings &settings);
    ~OrbHandler() = delete; // whoever is late finds an ORB that has ended

    class Private;
    const std::unique_ptr<Private> d;
};

/// A reference of its own to the same object; what is set for it holds for nobody else. The caller releases it.
ORBCONNECTION_EXPORT CORBA::Object_ptr separateReference(CORBA::Object_ptr object);

/// Calls nothing at @p object until the connections whose other end has gone are used up: the ORB keeps them, and the
/// first call on each fails. Waits at most @p limit; what is not done then goes on in the background.
ORBCONNECTION_EXPORT void useUpDeadConnections(CORBA::Object_ptr object, std::chrono::milliseconds limit);

/// A reference of its own to the same object, whose calls end after @p limit, but not before the time to connect, where
/// that is needed first. The caller releases it.
template <typename Interface>
typename Interface::_ptr_type withCallLimit(typename Interface::_ptr_type object, std::chrono::milliseconds limit)
{
    const CORBA::Object_var copy = separateReference(object);
    // First the interface: narrowing makes a reference that knows no limit.
    typename Interface::_var_type reference = Interface::_unchecked_narrow(copy);
    if (!CORBA::is_nil(reference))
        omniORB::setClientCallTimeout(reference, static_cast<CORBA::ULong>(limit.count()));
    return reference._retn();
}
} // namespace CorbaCommon
