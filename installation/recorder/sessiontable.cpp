#include "installation/recorder/sessiontable.h"

#include "installation/recorder/recordererror.h"

#include <algorithm>
#include <utility>

namespace installation::recorder
{

void SessionTable::requireRoom(SessionKind kind)
{
    if (count(kind) >= maximumOfAKind)
        throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED,
                            QStringLiteral("there are %1 sessions already").arg(maximumOfAKind));
}

void SessionTable::add(Session session)
{
    forgetClosed();
    const auto entry = std::make_shared<Entry>();
    static_cast<Session &>(*entry) = std::move(session);
    const std::scoped_lock lock(mutex);
    entries.push_back(entry);
}

CORBA::Object_ptr SessionTable::find(SessionKind kind, const QString &recordId) const
{
    const std::scoped_lock lock(mutex);
    for (const auto &entry : entries)
        if (!entry->leaving && entry->kind == kind && entry->recordId == recordId)
            return entry->activation->reference();
    return CORBA::Object::_nil();
}

/// Those that are meant and that nobody else ends.
std::vector<std::shared_ptr<SessionTable::Entry>>
SessionTable::takeLeave(const std::function<bool(const Entry &)> &isMeant)
{
    std::vector<std::shared_ptr<Entry>> found;
    const std::scoped_lock lock(mutex);
    for (const auto &entry : entries)
        if (isMeant(*entry) && !std::exchange(entry->leaving, true))
            found.push_back(entry);
    return found;
}

bool SessionTable::end(const QString &recordId)
{
    const auto found = takeLeave([&](const Entry &entry) { return entry.recordId == recordId; });
    for (const auto &entry : found) {
        entry->work->stop();
        close(*entry);
    }
    forgetClosed();
    return !found.empty();
}

void SessionTable::ended(SessionKind kind, const QString &recordId)
{
    // The table keeps them alive, so that no thread has to wait for its own end.
    for (const auto &entry : takeLeave([&](const Entry &entry) { return entry.kind == kind && entry.recordId == recordId; }))
        close(*entry);
}

void SessionTable::close(Entry &entry)
{
    entry.activation.reset();
    {
        const std::scoped_lock lock(mutex);
        entry.isClosed = true;
    }
    entry.activity.reset(); // last: whoever hears that the record is idle may forget what is closed
}

void SessionTable::endAll()
{
    for (const QString &recordId : recordIds())
        end(recordId);
    std::vector<std::shared_ptr<Entry>> others; // they are about to end by themselves
    {
        const std::scoped_lock lock(mutex);
        others = entries;
    }
    for (const auto &entry : others)
        entry->work->stop();
    forgetClosed();
}

void SessionTable::forgetClosed()
{
    std::vector<std::shared_ptr<Entry>> gone;
    {
        const std::scoped_lock lock(mutex);
        for (const auto &entry : entries)
            if (entry->isClosed)
                gone.push_back(entry);
        std::erase_if(entries, [](const auto &entry) { return entry->isClosed; });
    }
    for (const auto &entry : gone)
        entry->work->stop();
}

QStringList SessionTable::recordIds() const
{
    QStringList ids;
    const std::scoped_lock lock(mutex);
    for (const auto &entry : entries)
        if (!entry->leaving)
            ids.append(entry->recordId);
    return ids;
}

std::size_t SessionTable::count(SessionKind kind) const
{
    const std::scoped_lock lock(mutex);
    return std::ranges::count_if(entries, [kind](const auto &entry) { return !entry->leaving && entry->kind == kind; });
}

QHash<DataRate, int> SessionTable::occupation() const
{
    QHash<DataRate, int> occupied;
    const std::scoped_lock lock(mutex);
    for (const auto &entry : entries)
        if (!entry->leaving)
            ++occupied[entry->rate];
    return occupied;
}

} // namespace installation::recorder
