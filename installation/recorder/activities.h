#pragma once

#include "installation/recorder/record.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace installation::recorder
{

class Activities;

/// Something that goes on with a record; ends with the life of this object.
class Activity
{
public:
    ~Activity();
    Activity(const Activity &) = delete;

    /// Goes on as @p status.
    void become(RecordStatus status);
    const QString &recordId() const { return id; }

private:
    friend class Activities;
    Activity(std::shared_ptr<Activities> activities, const QString &id) : activities(std::move(activities)), id(id) {}

    const std::shared_ptr<Activities> activities;
    const QString id;
};

/// What goes on with the records at present. It overlays the status that is stored, and is gone after a restart.
///
/// At most one activity per record: whoever wants to do what clashes with others begins one, or requires none, on the
/// store thread, so that no change of the store comes between.
/// Thread: any.
class Activities : public std::enable_shared_from_this<Activities>
{
public:
    /// Hears of every change of a status, in their order; must neither wait nor call back.
    using Observer = std::function<void(const QString &recordId, const QString &name, RecordStatus status)>;

    explicit Activities(Observer observer = {}) : observer(std::move(observer)) {}

    /// @p name is the record's, for those who are told.
    /// @throws RecorderError with `ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE` when something goes on with it already.
    std::unique_ptr<Activity> begin(const QString &recordId, const QString &name, RecordStatus status);
    /// @throws RecorderError as begin() does.
    void requireNone(const QString &recordId) const;
    /// The record has another name now.
    void rename(const QString &recordId, const QString &name);

    RecordStatus statusOf(const RecordSummary &record) const;
    /// @p record with its status as it is now.
    template <typename AnyRecord> AnyRecord overlaid(AnyRecord record) const
    {
        record.status = statusOf(record);
        return record;
    }

private:
    friend class Activity;
    struct State {
        QString name;
        RecordStatus status;
    };

    void requireNoneLocked(const QString &recordId) const;
    void become(const QString &recordId, RecordStatus status);
    void end(const QString &recordId);
    void tell(const QString &recordId, const State &state) const;

    const Observer observer;
    mutable std::mutex mutex; // guards the rest, and is held while the observer is told
    std::map<QString, State> states;
};

} // namespace installation::recorder
