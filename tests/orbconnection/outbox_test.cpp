#include "orbconnection/outbox.h"

#include <gtest/gtest.h>

#include <thread>

using mirror::Outbox;
using namespace std::chrono_literals;

namespace
{
class AnOutbox : public testing::Test
{
protected:
    quint64 next(quint64 received) { return box.next(received, 0ms).sequence; }

    Outbox box{100};
};

TEST_F(AnOutbox, HandsOutABatchUntilItIsReceived)
{
    box.put(1, "a", false);
    box.put(2, "b", false);
    EXPECT_EQ(next(0), 1u);
    EXPECT_EQ(next(0), 1u);
    EXPECT_EQ(next(1), 2u);
    EXPECT_EQ(next(2), 0u);
}

TEST_F(AnOutbox, DropsEverythingWhenItIsTooFull)
{
    box.put(1, std::string(60, 'x'), false);
    box.put(2, std::string(60, 'x'), false);
    EXPECT_EQ(next(0), 0u);
    box.put(3, "a", false);
    EXPECT_EQ(next(0), 0u);
    EXPECT_TRUE(box.takeOverflow());
    EXPECT_FALSE(box.takeOverflow());
    box.refill();
    box.put(4, "a", false);
    EXPECT_EQ(next(0), 4u);
}

TEST_F(AnOutbox, HasRoomAgainForWhatWasReceived)
{
    for (quint64 i = 1; i < 10; ++i) {
        box.put(i, std::string(60, 'x'), false);
        EXPECT_EQ(next(i - 1), i);
        EXPECT_EQ(next(i), 0u);
    }
    EXPECT_FALSE(box.takeOverflow());
}

TEST_F(AnOutbox, AlwaysHasRoomForASnapshot)
{
    box.put(1, std::string(500, 'x'), true);
    box.put(2, std::string(500, 'x'), true);
    box.put(3, std::string(60, 'x'), false);
    EXPECT_EQ(next(2), 3u);
    EXPECT_FALSE(box.takeOverflow());
}

TEST_F(AnOutbox, WakesWhoWaits)
{
    std::thread other([this] { box.put(1, "a", false); });
    EXPECT_EQ(box.next(0, 20s).sequence, 1u);
    other.join();
}

TEST_F(AnOutbox, ThatCloses)
{
    std::thread other([this] { box.close(); });
    EXPECT_EQ(box.next(0, 20s).sequence, 0u);
    other.join();
    EXPECT_TRUE(box.isClosed());
}
} // namespace
