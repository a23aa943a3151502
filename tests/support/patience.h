#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Does something, on a thread of its own, if it lives longer than a test may take: whoever waits then gets an answer
/// that the test does not expect, instead of hanging.
class Patience
{
public:
    Patience(std::chrono::seconds longest, const std::function<void()> &whenOver)
        : thread([this, longest, whenOver](const std::stop_token &end) {
              std::mutex mutex;
              std::unique_lock lock(mutex);
              if (std::condition_variable_any().wait_for(lock, end, longest, [&] { return end.stop_requested(); }))
                  return;
              over = true;
              whenOver();
          })
    {
    }
    Patience(const Patience &) = delete;

    bool isOver() const { return over; }
    /// When this returns, it is over or never will be.
    void end()
    {
        thread.request_stop();
        thread.join();
    }

private:
    std::atomic<bool> over = false;
    std::jthread thread;
};
