#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace installation
{

/// Does something again and again on a thread of its own, at once for the first time.
class Repetition
{
public:
    Repetition(std::chrono::milliseconds interval, std::function<void()> work);
    /// As stop().
    ~Repetition();
    Repetition(const Repetition &) = delete;
    Repetition &operator=(const Repetition &) = delete;

    /// Waits for the work that is being done, and does it no more. Any number of times, but by one thread.
    void stop();
    /// The end is waited for: long work had better stop. Thread: any.
    bool isStopping();

private:
    void run();
    bool waitForNext();

    const std::chrono::milliseconds interval;
    const std::function<void()> work;
    std::mutex mutex; // guards `stopped`, by which stop() ends the thread
    std::condition_variable stopping;
    bool stopped = false;
    std::thread thread;
};

} // namespace installation
