#include "orbconnection/heartbeat.h"
#include "orbconnection/mirrortiming.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{
TEST(Heartbeat, IsLostAfterThreeMissed)
{
    std::chrono::steady_clock::time_point now{};
    mirror::Heartbeat heartbeat(MirrorTiming().silenceUntilLost(), [&] { return now; });
    now += 6000ms;
    EXPECT_FALSE(heartbeat.isLost());
    now += 1ms;
    EXPECT_TRUE(heartbeat.isLost());
    heartbeat.beat();
    EXPECT_FALSE(heartbeat.isLost());
}
} // namespace
