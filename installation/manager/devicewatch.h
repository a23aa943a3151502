#pragma once

#include "installation/manager/devicedirectory.h"
#include "installation/manager/knowndevices.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/recorderfinder.h"
#include "installation/manager/recordwatch.h"
#include "installation/manager/repetition.h"

#include <functional>
#include <memory>

namespace installation
{

/// Looks for recorders and asks them how they are, again and again, keeps the directory and the list on the disk up to
/// date, and has their records followed.
///
/// A device stays in the directory for good; one that does not answer is not available. What the central object service
/// forgets is still asked, so that its restart disturbs nobody.
/// Thread: looks and the disk are a matter of a thread of its own; devices are asked on one thread each, some at once.
/// Errors: traced, and the last good state kept.
class DeviceWatch
{
public:
    /// Hears of all devices after each look that found a change, on the thread of the watch.
    using Listener = std::function<void(const DeviceList &)>;

    /// The destructor waits for the call that is being made.
    DeviceWatch(const ManagerConfiguration &configuration, CCO::IF_CCO_c_ptr service,
                std::shared_ptr<DeviceDirectory> directory, RecordWatch records, Listener listener);

    /// The devices known from earlier.
    static DeviceList knownFrom(const QString &stateFolder);

private:
    struct Watched {
        Device device;
        std::string reference;              ///< by which a new reference is told from the same one
        TQ_KORVE::IF_Control_var forStatus; ///< the same object as device.control, with the shorter limit
        bool isNew = false;                 ///< a recorder that nobody has asked for its records
    };

    static std::map<QString, Watched> watchedFrom(const QString &stateFolder);
    void look();
    bool take(const QString &id, CORBA::Object_ptr recorder);
    bool askAll(bool countRecords);
    bool ask(Watched &watched, bool countRecords);
    int countOf(const Device &device, int lastCount);
    void save() const;
    DeviceList list() const;

    const ManagerConfiguration::Timing timing;
    const KnownDevices known;
    RecorderFinder finder;
    const std::shared_ptr<DeviceDirectory> directory;
    const Listener listener;
    RecordWatch records;
    std::map<QString, Watched> devices; // of the thread
    unsigned looks = 0;                 // of the thread
    Repetition repetition;              // last: it uses all the others
};

} // namespace installation
