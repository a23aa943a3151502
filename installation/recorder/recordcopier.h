#pragma once

#include "installation/recorder/jobs.h"
#include "installation/recorder/recordparts.h"

#include <chrono>
#include <functional>
#include <memory>

namespace installation::recorder
{

class DeviceClock;
class StoreThread;

/// Makes records of sections of other records.
///
/// A copy runs on a thread of its own. It is a record from the moment it is complete and on the disk, and not before:
/// an end of the process leaves nothing of it. At most maximumCopies go on at once.
/// Thread: any.  Errors: throws RecorderError; nothing stays behind then.
class RecordCopier
{
public:
    static constexpr unsigned maximumCopies = 4;

    struct Timing {
        std::chrono::milliseconds patience{5000}; ///< how long copy() waits for the end of it
    };
    /// Told on any thread; members may be empty.
    struct Listener {
        /// May refuse the copy by throwing RecorderError.
        std::function<void(const QString &sourceId, const QString &copyId)> begun;
        /// @p failure is empty when the copy is a record now.
        std::function<void(const QString &sourceId, const QString &copyId, const QString &failure)> ended;
    };

    /// @p clock lives longer.
    RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock, Listener listener, Timing timing);
    RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock);

    /// Returns the id of the record that is made of the sections @p parts of @p sourceId. Waits for the copy; one that
    /// takes longer than the patience goes on, is told to the listener at its end, and is in no list before.
    QString copy(const QString &sourceId, const QVector<FilePart> &parts, const QString &name);
    /// Ends the copies that go on, and waits until they have; nothing stays of them.
    void stop() { jobs.stop(); }

private:
    struct Copy;
    Record describe(const Record &source, const QVector<FilePart> &parts, const QString &name) const;
    void perform(Copy &copy, const std::stop_token &cancellation) const;

    const std::shared_ptr<StoreThread> store;
    const DeviceClock &clock;
    const Listener listener;
    const Timing timing;
    Jobs jobs;
};

} // namespace installation::recorder
