#include "orbconnection/sessiongate.h"

#include <algorithm>

namespace mirror
{
bool SessionGate::isFullFor(const std::string &address) const
{
    const auto isOfAddress = [&](const auto &line) { return line.second->address == address; };
    return lines.size() >= maximumSessions
        || (!address.empty() // else it is of this process
            && static_cast<std::size_t>(std::ranges::count_if(lines, isOfAddress)) >= maximumOfOneAddress);
}

quint64 SessionGate::open(const QString &path, const std::string &address)
{
    const std::lock_guard lock(mutex);
    if (closed || isFullFor(address))
        return 0;
    quint64 session = 0;
    while (session == 0 || lines.contains(session))
        session = quint64{random()} << 32 | random();
    lines.emplace(session, std::make_shared<SessionLine>(timing, path, address, clock));
    untaken.insert(session);
    return session;
}

std::vector<SessionGate::Numbered> SessionGate::takeNew()
{
    const std::lock_guard lock(mutex);
    std::vector<Numbered> taken;
    for (const quint64 session : untaken)
        taken.emplace_back(session, lines.at(session));
    untaken.clear();
    return taken;
}

std::shared_ptr<SessionLine> SessionGate::line(quint64 session) const
{
    const std::lock_guard lock(mutex);
    const auto found = lines.find(session);
    return found == lines.end() ? nullptr : found->second;
}

bool SessionGate::remove(quint64 session)
{
    const std::lock_guard lock(mutex);
    const auto found = lines.find(session);
    if (found == lines.end())
        return false;
    found->second->outbox.close();
    lines.erase(found);
    return untaken.erase(session) == 0;
}

bool SessionGate::admit(std::size_t bytes)
{
    if (bytesToApply.fetch_add(bytes) <= fullQueues * timing.queueBytes)
        return true;
    bytesToApply -= bytes;
    return false;
}

void SessionGate::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    for (const auto &[session, line] : lines)
        line->outbox.close();
    lines.clear();
    untaken.clear();
}
} // namespace mirror
