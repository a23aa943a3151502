#include "orbconnection/outbox.h"

#include <utility>

namespace mirror
{
void Outbox::put(quint64 sequence, std::string bytes)
{
    const std::lock_guard lock(mutex);
    if (closed)
        return;
    bytesWaiting += counted(bytes);
    entries.push_back({sequence, std::make_shared<const std::string>(std::move(bytes))});
    changed.notify_all();
}

void Outbox::clear()
{
    const std::lock_guard lock(mutex);
    entries.clear();
    bytesWaiting = 0;
}

void Outbox::whenBelow(std::size_t bytes, std::function<void()> call)
{
    std::function<void()> due;
    {
        const std::lock_guard lock(mutex);
        callBelow = bytes;
        roomCall = std::move(call);
        due = callThatIsDue();
    }
    if (due)
        due();
}

Outbox::Entry Outbox::next(quint64 received, std::chrono::milliseconds patience)
{
    std::function<void()> due;
    {
        const std::lock_guard lock(mutex);
        drop(received);
        due = callThatIsDue();
    }
    if (due)
        due();
    std::unique_lock lock(mutex);
    changed.wait_for(lock, patience, [this] { return !entries.empty() || closed; });
    return entries.empty() ? Entry() : entries.front();
}

void Outbox::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    roomCall = nullptr;
    changed.notify_all();
}

bool Outbox::isClosed() const
{
    const std::lock_guard lock(mutex);
    return closed;
}

void Outbox::drop(quint64 received)
{
    while (!entries.empty() && entries.front().sequence <= received) {
        bytesWaiting -= counted(*entries.front().bytes);
        entries.pop_front();
    }
}

std::function<void()> Outbox::callThatIsDue()
{
    return bytesWaiting < callBelow ? std::exchange(roomCall, nullptr) : nullptr;
}
} // namespace mirror
