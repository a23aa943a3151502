#include "orbconnection/outbox.h"

#include <utility>

namespace mirror
{
void Outbox::put(quint64 sequence, std::string bytes, bool essential)
{
    const std::lock_guard lock(mutex);
    if (dropping || closed)
        return;
    if (!essential && bytesWaiting + bytes.size() > maximumBytes) {
        dropping = true;
        overflowNoted = true;
        entries.clear();
        bytesWaiting = 0;
    } else {
        const std::size_t counted = essential ? 0 : bytes.size();
        bytesWaiting += counted;
        entries.push_back({sequence, std::make_shared<const std::string>(std::move(bytes)), counted});
    }
    changed.notify_all();
}

void Outbox::refill()
{
    const std::lock_guard lock(mutex);
    dropping = false;
    overflowNoted = false;
    entries.clear();
    bytesWaiting = 0;
}

bool Outbox::takeOverflow()
{
    const std::lock_guard lock(mutex);
    return std::exchange(overflowNoted, false);
}

Outbox::Entry Outbox::next(quint64 received, std::chrono::milliseconds patience)
{
    std::unique_lock lock(mutex);
    Entry entry = firstAfter(received);
    if (entry.sequence == 0) {
        changed.wait_for(lock, patience, [&] {
            entry = firstAfter(received);
            return entry.sequence != 0 || closed || overflowNoted;
        });
    }
    return entry;
}

void Outbox::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    changed.notify_all();
}

bool Outbox::isClosed() const
{
    const std::lock_guard lock(mutex);
    return closed;
}

Outbox::Entry Outbox::firstAfter(quint64 received)
{
    while (!entries.empty() && entries.front().sequence <= received) {
        bytesWaiting -= entries.front().counted;
        entries.pop_front();
    }
    return entries.empty() ? Entry() : entries.front();
}
} // namespace mirror
