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

    Outbox box{0};
};

TEST_F(AnOutbox, HandsOutABatchUntilItIsReceived)
{
    box.put(1, "a");
    box.put(2, "b");
    EXPECT_EQ(next(0), 1u);
    EXPECT_EQ(next(0), 1u);
    EXPECT_EQ(next(1), 2u);
    EXPECT_EQ(next(2), 0u);
}

TEST_F(AnOutbox, CountsWhatWaits)
{
    box.put(1, std::string(60, 'x'));
    box.put(2, std::string(50, 'x'));
    EXPECT_EQ(box.waiting(), 110u);
    next(1);
    EXPECT_EQ(box.waiting(), 50u);
    box.clear();
    EXPECT_EQ(box.waiting(), 0u);
    EXPECT_EQ(next(1), 0u);
}

TEST_F(AnOutbox, CountsASmallBatchAsTheLeast)
{
    Outbox counting(50);
    counting.put(1, "a");
    counting.put(2, std::string(60, 'x'));
    EXPECT_EQ(counting.waiting(), 110u);
    counting.next(1, 0ms);
    EXPECT_EQ(counting.waiting(), 60u);
}

TEST_F(AnOutbox, SaysOnceWhenThereIsRoom)
{
    int calls = 0;
    box.put(1, std::string(60, 'x'));
    box.put(2, std::string(60, 'x'));
    box.put(3, std::string(60, 'x'));
    box.whenBelow(100, [&] { ++calls; });
    next(1);
    EXPECT_EQ(calls, 0);
    next(2);
    EXPECT_EQ(calls, 1);
    next(3);
    EXPECT_EQ(calls, 1);
}

TEST_F(AnOutbox, WithRoomSaysSoAtOnce)
{
    int calls = 0;
    box.put(1, std::string(60, 'x'));
    box.whenBelow(61, [&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST_F(AnOutbox, HasNoRoomYetAtTheLimitItself)
{
    int calls = 0;
    box.put(1, std::string(60, 'x'));
    box.whenBelow(60, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    next(1);
    EXPECT_EQ(calls, 1);
}

TEST_F(AnOutbox, ThatIsClosedTakesNothingAndSaysNothing)
{
    int calls = 0;
    box.put(1, std::string(60, 'x'));
    box.whenBelow(60, [&] { ++calls; });
    box.close();
    box.put(2, std::string(60, 'x'));
    EXPECT_EQ(box.waiting(), 60u);
    next(1);
    EXPECT_EQ(calls, 0);
}

TEST_F(AnOutbox, WakesWhoWaits)
{
    std::thread other([this] { box.put(1, "a"); });
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
