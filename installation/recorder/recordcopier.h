#pragma once

#include "installation/recorder/jobs.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordparts.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

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
    /// Asked on the store thread before a copy begins; what it answers is kept until the copy ends. May refuse the copy
    /// by throwing RecorderError.
    using Claim = std::function<std::shared_ptr<void>(const Record &source, const QString &copyId)>;
    /// Told on any thread; @p failure is empty when the copy is a record now.
    using Ended = std::function<void(const QString &copyId, const QString &failure)>;

    /// @p clock lives longer.
    RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock, Claim claim, Timing timing);
    RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock, Claim claim = {});

    /// Returns the id of the record that is made of the sections @p parts of @p sourceId. Waits for the copy; one that
    /// takes longer than the patience goes on, and is in no list before its end. @p ended is told when it began.
    QString copy(const QString &sourceId, const QVector<FilePart> &parts, const QString &name, const Ended &ended = {});
    /// See Jobs.
    void cancel() { jobs.cancel(); }
    /// Ends the copies that go on, and waits until they have; nothing stays of them.
    void stop() { jobs.stop(); }

private:
    struct Copy;
    std::shared_ptr<Copy> prepare(const QString &sourceId, const QVector<FilePart> &parts, const QString &name);
    void perform(Copy &copy, const std::stop_token &cancellation) const;
    static std::optional<RecorderError> make(Copy &copy, const std::stop_token &cancellation);

    const std::shared_ptr<StoreThread> store;
    const DeviceClock &clock;
    const Claim claim;
    const Timing timing;
    Jobs jobs;
};

} // namespace installation::recorder
