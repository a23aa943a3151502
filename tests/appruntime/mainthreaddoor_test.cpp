#include "appruntime/mainthreaddoor.h"

#include "appruntime/threadswitchingadministration.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <future>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using ThreadingHelper::MainThreadDoor;
using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::ThreadSwitchingAdministration;

/// A door of its own, so that opening and closing it leaves the application's alone.
class Door : public testing::Test
{
protected:
    RunInMainThreadEvent note(int number)
    {
        return RunInMainThreadEvent([this, number] { ran.push_back(number); });
    }
    /// The result of a call that waits on another thread.
    std::future<bool> callFromOutside(RunInMainThreadEvent event)
    {
        return std::async(std::launch::async, [this, event] { return door.executeAndWait(event, poster); });
    }
    static bool isReady(const std::future<bool> &result)
    {
        return result.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready;
    }
    void runUntilReady(const std::future<bool> &result)
    {
        while (!isReady(result))
            QCoreApplication::processEvents();
    }

    const MainThreadDoor::Poster poster = ThreadSwitchingAdministration::CreateThreadSwitchingHandler("tests/door");
    MainThreadDoor door;
    std::vector<int> ran;
};

TEST_F(Door, IsClosedUntilThereIsAnApplication)
{
    EXPECT_FALSE(door.post(note(1), poster));
    EXPECT_FALSE(door.executeAndWait(note(2), poster));
    QCoreApplication::processEvents();
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(Door, ReleasesThoseWhoWaitWhenTheLoopEnds)
{
    door.open();
    std::future<bool> result = callFromOutside(note(1));
    EXPECT_FALSE(isReady(result));
    door.releaseWaiters();
    EXPECT_FALSE(result.get());
    QCoreApplication::processEvents();
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(Door, TakesPostsAfterTheLoopHasEnded)
{
    door.open();
    door.releaseWaiters();
    EXPECT_TRUE(door.post(note(1), poster));
    EXPECT_TRUE(door.executeAndWait(note(2), poster)) << "already on the main thread";
    QCoreApplication::processEvents();
    EXPECT_THAT(ran, ElementsAre(2, 1));
}

TEST_F(Door, DropsWhatHasNotRunWhenItCloses)
{
    door.open();
    auto held = std::make_shared<int>();
    EXPECT_TRUE(door.post(RunInMainThreadEvent([this, held] { ran.push_back(1); }), poster));
    door.close();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(door.post(note(2), poster));
    QCoreApplication::processEvents();
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(Door, MayBeUsedByWhatDiesWhenItCloses)
{
    door.open();
    bool taken = true;
    const auto postOnDeath = [&](int *) { taken = door.post(note(1), poster); };
    door.post(RunInMainThreadEvent([last = std::shared_ptr<int>(nullptr, postOnDeath)] {}), poster);
    door.close();
    EXPECT_FALSE(taken);
}

TEST_F(Door, OpensAgainForAFurtherApplication)
{
    door.open();
    door.releaseWaiters();
    door.close();
    door.open();
    std::future<bool> result = callFromOutside(note(1));
    runUntilReady(result);
    EXPECT_TRUE(result.get());
    EXPECT_THAT(ran, ElementsAre(1));
}

TEST_F(Door, LetsACallThatRunsFinishWhenTheLoopEnds)
{
    door.open();
    std::future<bool> result = callFromOutside(RunInMainThreadEvent([this] {
        door.releaseWaiters();
        ran.push_back(1);
    }));
    runUntilReady(result);
    EXPECT_TRUE(result.get());
    EXPECT_THAT(ran, ElementsAre(1));
}
} // namespace
