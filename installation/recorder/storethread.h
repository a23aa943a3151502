#pragma once

#include "installation/recorder/storeanswer.h"
#include "installation/recorder/storerequest.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

namespace installation::recorder
{

/// The one thread that owns a record store; others hand it requests and wait, never longer than a limit.
///
/// Requests are served in the order in which they came. The thread waits for nobody.
/// Thread: any.
class StoreThread
{
public:
    static constexpr std::size_t maximumWaiting = 1000;

    /// Opens the store in @p path.
    /// @throws RecorderError when that is not possible.
    explicit StoreThread(const QString &path, std::chrono::milliseconds limit = std::chrono::seconds(8));
    /// As stop().
    ~StoreThread();
    StoreThread(const StoreThread &) = delete;

    /// Serves the requests that are waiting still, and closes the store; later requests are refused. Any number of
    /// times, but by one thread.
    void stop();

    /// What @p work returns or throws. It must own what it uses, since it may outlive the wait.
    /// @throws RecorderError when the store takes too long; it tells whether the work may still be done. Also after
    /// stop().
    template <typename Work> auto ask(Work work) -> std::invoke_result_t<Work &, RecordStore &>
    {
        return ask(std::move(work), limit);
    }
    /// Asks with a limit of its own, for who has more time than a caller.
    template <typename Work>
    auto ask(Work work, std::chrono::milliseconds ownLimit) -> std::invoke_result_t<Work &, RecordStore &>
    {
        using Result = std::invoke_result_t<Work &, RecordStore &>;
        using Answer = StoreAnswer<Result>;
        const auto task = std::make_shared<std::packaged_task<Answer(RecordStore &)>>(
            [work = std::move(work)](RecordStore &store) mutable { return Answer::of(work, store); });
        std::future<Answer> answer = task->get_future();
        const auto request = post([task](RecordStore &store) { (*task)(store); });
        if (answer.wait_for(ownLimit) != std::future_status::ready)
            giveUp(*request);
        return answer.get().take();
    }

    /// Has @p work done in its turn, and waits for nothing; what it throws is traced.
    /// @throws RecorderError when too many requests are waiting.
    void tell(std::function<void(RecordStore &)> work);

private:
    std::shared_ptr<StoreRequest> post(std::function<void(RecordStore &)> work);
    [[noreturn]] static void giveUp(StoreRequest &request);
    void run(const QString &path, std::promise<void> &opened);
    std::shared_ptr<StoreRequest> next();

    const std::chrono::milliseconds limit;
    std::mutex mutex; // guards the two members below; not held while a request is served
    std::deque<std::shared_ptr<StoreRequest>> waiting;
    bool stopped = false;
    std::condition_variable changed;
    std::thread thread;
};

} // namespace installation::recorder
