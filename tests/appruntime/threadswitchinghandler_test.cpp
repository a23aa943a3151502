#include "appruntime/threadswitchingadministration.h"
#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <atomic>
#include <thread>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::RunInMainThreadEvent3;
using ThreadingHelper::ThreadSwitchingAdministration;
using ThreadingHelper::ThreadSwitchingHandler;

/// Notes what it is told, and on which thread.
class Notebook
{
public:
    void note(int a, int b, int c)
    {
        notes.push_back(a * 100 + b * 10 + c);
        thread = std::this_thread::get_id();
    }
    std::vector<int> notes;
    std::thread::id thread;
};

class Switching : public testing::Test
{
protected:
    RunInMainThreadEvent3 note(int a, int b, int c) { return {&book, &Notebook::note, a, b, c}; }
    /// Runs the event loop while @p work runs on a thread without one.
    template <typename Work> void runBeside(const Work &work)
    {
        QEventLoop loop;
        std::thread worker([&] {
            work();
            handler->post(RunInMainThreadEvent(&loop, &QEventLoop::quit));
        });
        loop.exec();
        worker.join();
    }

    const std::shared_ptr<ThreadSwitchingHandler> handler =
        ThreadSwitchingAdministration::CreateThreadSwitchingHandler("tests/switching");
    Notebook book;
};

TEST_F(Switching, RunsPostsLaterAndInOrder)
{
    handler->post(note(1, 2, 3));
    handler->post(note(4, 5, 6));
    EXPECT_THAT(book.notes, IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_THAT(book.notes, ElementsAre(123, 456));
}

TEST_F(Switching, RunsPostsOfAnotherThreadOnTheMainThread)
{
    runBeside([this] {
        for (int i = 0; i < 9; ++i)
            handler->post(note(0, 0, i));
    });
    EXPECT_THAT(book.notes, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(book.thread, std::this_thread::get_id());
}

TEST_F(Switching, WaitsUntilTheCallHasRun)
{
    std::vector<int> seenByCaller;
    runBeside([&] {
        handler->post(note(1, 1, 1));
        EXPECT_TRUE(handler->executeAndWait(note(2, 2, 2)));
        seenByCaller = book.notes;
    });
    EXPECT_THAT(seenByCaller, ElementsAre(111, 222));
    EXPECT_EQ(book.thread, std::this_thread::get_id());
}

TEST_F(Switching, RunsAtOnceOnTheMainThread)
{
    EXPECT_TRUE(handler->executeAndWait(note(7, 7, 7)));
    EXPECT_THAT(book.notes, ElementsAre(777));
}

TEST_F(Switching, ReturnsToTheCallerAlsoAfterAnException)
{
    const CapturedTraces traces;
    runBeside([this] {
        EXPECT_TRUE(handler->executeAndWait(RunInMainThreadEvent([] { throw std::runtime_error("trouble"); })));
    });
    EXPECT_THAT(traces.texts(), ElementsAre("Exception in an event of tests/switching: trouble"));
}

TEST_F(Switching, RunsTheRestInAnEventLoopThatAnEventStarts)
{
    QEventLoop inner;
    handler->post(RunInMainThreadEvent([&] {
        book.notes.push_back(1);
        inner.exec();
        book.notes.push_back(3);
    }));
    handler->post(RunInMainThreadEvent([&] {
        book.notes.push_back(2);
        inner.quit();
    }));
    QCoreApplication::processEvents();
    EXPECT_THAT(book.notes, ElementsAre(1, 2, 3));
}

TEST_F(Switching, KeepsTheHandlerUntilItsEventsHaveRun)
{
    auto brief = ThreadSwitchingAdministration::CreateThreadSwitchingHandler("tests/brief");
    const std::weak_ptr<ThreadSwitchingHandler> watch = brief;
    brief->post(note(1, 2, 3));
    brief.reset();
    EXPECT_FALSE(watch.expired());
    QCoreApplication::processEvents();
    EXPECT_TRUE(watch.expired());
    EXPECT_THAT(book.notes, ElementsAre(123));
}

TEST_F(Switching, ServesManyThreadsAtOnce)
{
    constexpr int threadCount = 4;
    constexpr int callCount = 250;
    std::atomic<int> running = threadCount;
    QEventLoop loop;
    int calls = 0; // without a lock: only the main thread writes it
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < callCount; ++i) {
                handler->post(RunInMainThreadEvent([&] { ++calls; }));
                handler->executeAndWait(RunInMainThreadEvent([&] { ++calls; }));
            }
            if (--running == 0)
                handler->post(RunInMainThreadEvent(&loop, &QEventLoop::quit));
        });
    loop.exec();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(calls, 2 * threadCount * callCount);
}
} // namespace
