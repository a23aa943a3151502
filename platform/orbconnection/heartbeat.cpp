#include "orbconnection/heartbeat.h"

namespace mirror
{
Heartbeat::Heartbeat(std::chrono::milliseconds patience, Clock clock)
    : patience(patience), clock(std::move(clock))
{
    beat();
}

void Heartbeat::beat()
{
    last = clock().time_since_epoch().count();
}

bool Heartbeat::isLost() const
{
    return clock().time_since_epoch() - std::chrono::steady_clock::duration(last) > patience;
}
} // namespace mirror
