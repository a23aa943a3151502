#include "orbconnection/heartbeat.h"

namespace mirror
{
Heartbeat::Heartbeat(const MirrorTiming &timing, Clock clock)
    : patience(timing.silenceUntilLost()), clock(std::move(clock))
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
