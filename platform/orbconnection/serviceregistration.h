#pragma once

#include "orbconnection/orbconnection_export.h"

#include <omniORB4/CORBA.h>

#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace CorbaCommon
{
/// Keeps the names of a service registered at the central object service: at once, and again every two seconds, so that
/// a new central service learns of them without anybody's doing.
///
/// The names stand together: while somebody else who lives holds one of them, none is registered, which is traced, and
/// tried again. To a new central object service that one may come first.
/// A thread of its own makes the calls. Needs a running OrbHandler.
/// Thread: any one; never blocks, but for the destructor and where it says so.  Errors: traced when they begin and when they end.
class ORBCONNECTION_EXPORT ServiceRegistration
{
public:
    struct Timing {
        std::chrono::milliseconds repetition{2000};
        std::chrono::milliseconds callLimit{2000};
    };

    /// How it stands with the names, all of them.
    enum class State {
        Untried,
        Registered,
        Refused, ///< somebody else who lives holds one of them
        Failing  ///< the central object service does not answer, or does not take one of them
    };
    /// Hears of each change of the state, and in some words why; on the thread that makes the calls.
    using Listener = std::function<void(State now, const QString &why)>;

    ServiceRegistration();
    explicit ServiceRegistration(const Timing &timing, Listener listener = {});
    ServiceRegistration(const ServiceRegistration &) = delete;
    /// Takes the names back; waits at most for one call that has no answer.
    ~ServiceRegistration();

    /// @p name is relative to the central services of the local subsystem. Replaces what it had.
    void registerObject(const QString &name, CORBA::Object_ptr object);
    void registerValues(const QString &name, const QStringList &values);
    /// Registers the values (address, port): where this host can be reached, as OrbSettings publishes it.
    void registerEndpoint(const QString &name, unsigned short port);
    void unregister(const QString &name);
    void unregisterAll();
    /// Waits until all that was offered before has been tried: whether all of it is registered. For what must not be
    /// found before these names are. Blocks at most for a call limit.
    bool waitUntilTried();

private:
    class Private;
    const std::unique_ptr<Private> d;
};
} // namespace CorbaCommon
