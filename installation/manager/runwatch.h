#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace installation
{

/// Looks after runs again and again, each on a thread of its own, so that a device or a program that hangs holds up
/// only what concerns it.
///
/// Thread: any.
class RunWatch
{
public:
    /// False when there is nothing more to look after.
    using Look = std::function<bool()>;

    explicit RunWatch(std::chrono::milliseconds interval) : interval(interval) {}
    ~RunWatch() { stop(); }
    RunWatch(const RunWatch &) = delete;

    void add(Look look);
    /// Looks no more; waits for those that are being taken. Not to be called by a look.
    void stop();

private:
    struct Watching {
        std::thread thread{};
        bool done = false;
    };

    void run(Watching &watching, const Look &look);
    bool waitForNextLook();

    const std::chrono::milliseconds interval;
    std::mutex mutex; // guards all below; not held during a look
    std::condition_variable stopping;
    bool stopped = false;
    std::list<Watching> all;
};

} // namespace installation
