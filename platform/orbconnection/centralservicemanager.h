#pragma once

#include "orbconnection/orbconnection_export.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace CorbaCommon
{
/// Watches one name of the central object service.
///
/// While the central object service itself is away, the last that is known holds. A thread of its own makes the calls.
/// Thread: main; never blocks, but for the destructor: for a call that has no answer, at most two seconds.
class ORBCONNECTION_EXPORT CentralServiceManager : public QObject
{
    Q_OBJECT
public:
    struct Timing {
        int missesUntilGone;            ///< looks in a row that find nothing
        std::chrono::milliseconds poll; ///< between two looks; changes that the service tells are looked at at once
        std::chrono::milliseconds callLimit{2000};
    };

    /// Begins at once; the first signal comes from the event loop.
    CentralServiceManager(const QString &name, int missesUntilGone, int pollMs);
    CentralServiceManager(const QString &name, const Timing &timing);
    ~CentralServiceManager() override;

Q_SIGNALS:
    /// True when the name appears, and again when another object or other values stand behind it or it had been gone
    /// in between; false when it goes. @p name is the watched one.
    void si_notifyServerAvailablity(bool available, const QString &name); // contract: spelled so

private:
    class Private;
    const std::unique_ptr<Private> d;
};
} // namespace CorbaCommon
