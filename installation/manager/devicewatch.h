#pragma once

#include "installation/manager/devicedirectory.h"
#include "installation/manager/knowndevices.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/recorderfinder.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <thread>

namespace installation
{

/// Looks for recorders and asks them how they are, again and again, and keeps the directory and the list on the disk
/// up to date.
///
/// A device stays in the directory for good; one that does not answer is not available. What the central object service
/// forgets is still asked, so that its restart disturbs nobody.
/// Thread: all calls and the disk are used on a thread of its own.  Errors: traced, and the last good state kept.
class DeviceWatch
{
public:
    /// Hears of all devices after each look that found a change, on the thread of the watch.
    using Listener = std::function<void(const DeviceList &)>;

    DeviceWatch(const ManagerConfiguration &configuration, CCO::IF_CCO_c_ptr service,
                std::shared_ptr<DeviceDirectory> directory, Listener listener);
    /// Waits for the call that is being made.
    ~DeviceWatch();
    DeviceWatch(const DeviceWatch &) = delete;

    /// The devices known from earlier.
    static DeviceList knownFrom(const QString &stateFolder);

private:
    struct Watched {
        Device device;
        std::string reference;              ///< by which a new reference is told from the same one
        TQ_KORVE::IF_Control_var forStatus; ///< the same object as device.control, with the shorter limit
    };

    void run();
    bool waitForNextLook();
    bool isStopping();
    void look();
    bool take(const QString &id, CORBA::Object_ptr recorder);
    bool ask(Watched &watched, bool countRecords) const;
    void save() const;
    DeviceList list() const;

    const ManagerConfiguration::Timing timing;
    const KnownDevices known;
    RecorderFinder finder;
    const std::shared_ptr<DeviceDirectory> directory;
    const Listener listener;
    std::map<QString, Watched> devices; // of the thread
    unsigned looks = 0;                 // of the thread

    std::mutex mutex; // guards `stopped`, by which the destructor ends the thread
    std::condition_variable stopping;
    bool stopped = false;
    std::thread thread;
};

} // namespace installation
