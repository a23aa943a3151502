#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace installation
{

/// Calls to one outside object, made one after the other by a thread of their own, so that nobody else waits for it.
///
/// An object that falls far behind loses the oldest calls; one that is no longer there, or fails three times in a row,
/// is given up. What limits a call is its reference.
/// Thread: any.
class CallQueue
{
public:
    struct Call {
        std::string subject;        ///< what the object is told of, for a trace
        std::function<void()> make; ///< fails by raising a CORBA::Exception
    };

    static constexpr std::size_t maximumCalls = 1000;

    /// @throws std::system_error when there is no thread to be had.
    CallQueue();
    /// Waits for the call that is being made.
    ~CallQueue();
    CallQueue(const CallQueue &) = delete;
    CallQueue &operator=(const CallQueue &) = delete;

    /// Never waits for the object.
    void add(Call call);
    /// No more calls are begun. Does not wait, so that the object may ask for it from within a call.
    void close();

    /// The calls that wait are made still, and none after them. Does not wait.
    void finish();

    /// The thread is done: closed, finished or given up.
    bool finished() const { return done; }
    bool givenUp() const { return failed; }

private:
    void run();
    std::optional<Call> next();
    bool make(const Call &call);

    std::mutex mutex; // guards the three members below; not held during a call
    std::deque<Call> calls;
    bool finishing = false;
    bool closed = false;
    std::condition_variable changed;
    int failures = 0; // of the thread alone
    std::atomic<bool> failed = false;
    std::atomic<bool> done = false;
    std::thread thread;
};

} // namespace installation
