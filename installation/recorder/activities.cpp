#include "installation/recorder/activities.h"

#include "installation/recorder/recordererror.h"

namespace installation::recorder
{

using KORVE_XML::KORVE_RecordData;

Activity::~Activity()
{
    activities->end(id);
}

void Activity::become(RecordStatus status)
{
    activities->become(id, status);
}

std::unique_ptr<Activity> Activities::begin(const QString &recordId, const QString &name, RecordStatus status)
{
    const std::scoped_lock lock(mutex);
    requireNoneLocked(recordId);
    std::unique_ptr<Activity> activity(new Activity(shared_from_this(), recordId));
    const State state{name, status};
    states.emplace(recordId, state);
    tell(recordId, state);
    return activity;
}

void Activities::requireNone(const QString &recordId) const
{
    const std::scoped_lock lock(mutex);
    requireNoneLocked(recordId);
}

void Activities::requireNoneLocked(const QString &recordId) const
{
    const auto found = states.find(recordId);
    if (found != states.end())
        throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE,
                            QStringLiteral("the record \"%1\" is %2")
                                .arg(recordId, KORVE_RecordData().RecordStatusToName(found->second.status)));
}

void Activities::rename(const QString &recordId, const QString &name)
{
    const std::scoped_lock lock(mutex);
    const auto found = states.find(recordId);
    if (found != states.end())
        found->second.name = name;
}

RecordStatus Activities::statusOf(const RecordSummary &record) const
{
    const std::scoped_lock lock(mutex);
    const auto found = states.find(record.id);
    return found == states.end() ? record.status : found->second.status;
}

void Activities::become(const QString &recordId, RecordStatus status)
{
    const std::scoped_lock lock(mutex);
    State &state = states.at(recordId);
    if (state.status == status)
        return;
    state.status = status;
    tell(recordId, state);
}

void Activities::end(const QString &recordId)
{
    const std::scoped_lock lock(mutex);
    const auto found = states.find(recordId);
    found->second.status = KORVE_RecordData::IDLE;
    tell(recordId, found->second);
    states.erase(found);
}

void Activities::tell(const QString &recordId, const State &state) const
{
    if (observer)
        observer(recordId, state.name, state.status);
}

} // namespace installation::recorder
