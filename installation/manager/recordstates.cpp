#include "installation/manager/recordstates.h"

#include "coresupport/trace.h"

#include <set>
#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/recordstates";

} // namespace

RecordStates::RecordStates(const QString &stateFolder, Listener listener)
    : kept(stateFolder), listener(std::move(listener))
{
    for (const RecordState &state : kept.load())
        busyRecords.emplace(Key(state.device, state.record), state);
}

void RecordStates::changed(const RecordState &state)
{
    const std::scoped_lock lock(mutex);
    notified[{state.device, state.record}] = ++moment;
    take(state);
}

RecordStates::Moment RecordStates::now()
{
    const std::scoped_lock lock(mutex);
    return moment;
}

void RecordStates::compare(const QString &device, const QVector<RecordState> &busy, Moment asked)
{
    const std::scoped_lock lock(mutex);
    // What was told before the question is older than the list.
    std::erase_if(notified, [&](const auto &entry) { return entry.first.first == device && entry.second <= asked; });
    for (const RecordState &state : busy + nowIdle(device, busy))
        if (!notified.contains({state.device, state.record}))
            take(state);
}

void RecordStates::take(const RecordState &state)
{
    const Key key(state.device, state.record);
    const auto known = busyRecords.find(key);
    if ((known == busyRecords.end() ? TQ_KRV::rsIDLE : known->second.status) == state.status)
        return;
    if (state.status == TQ_KRV::rsIDLE)
        busyRecords.erase(known);
    else
        busyRecords[key] = state;
    try {
        kept.save(state);
    } catch (const std::runtime_error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("a change is not kept: %1").arg(QString::fromUtf8(error.what())); });
    }
    listener(state);
}

/// Those that were busy and are not in the list any more.
QVector<RecordState> RecordStates::nowIdle(const QString &device, const QVector<RecordState> &busy) const
{
    std::set<QString> listed;
    for (const RecordState &state : busy)
        listed.insert(state.record);
    QVector<RecordState> idle;
    for (const auto &[key, state] : busyRecords)
        if (key.first == device && !listed.contains(key.second))
            idle.append({state.device, state.record, state.name, TQ_KRV::rsIDLE});
    return idle;
}

} // namespace installation
