#include "orbconnection/sessiongate.h"

namespace mirror
{
quint64 SessionGate::open()
{
    const std::lock_guard lock(mutex);
    if (closed || lines.size() >= maximumSessions)
        return 0;
    quint64 session = 0;
    while (session == 0 || lines.contains(session))
        session = quint64{random()} << 32 | random();
    lines.emplace(session, std::make_shared<SessionLine>(timing));
    return session;
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
    return true;
}

void SessionGate::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    for (const auto &[session, line] : lines)
        line->outbox.close();
    lines.clear();
}
} // namespace mirror
