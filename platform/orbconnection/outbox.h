#pragma once

#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace mirror
{
/// What a batch counts where many can wait for the main thread: small ones take memory, too.
constexpr std::size_t countedBytes(std::size_t batchBytes)
{
    return batchBytes + 256;
}

/// Batches on their way from the main thread to a thread that makes or answers remote calls.
///
/// Kept until the peer has them. Who puts them in looks at waiting() first: the box takes everything.
/// Thread: any; the lock is held for moments only, and never while anything else waits.
class Outbox
{
public:
    using Batch = std::shared_ptr<const std::string>;

    struct Entry {
        quint64 sequence = 0; ///< 0: there is none
        Batch bytes;
    };

    /// Each batch counts @p leastBytes at least: a small one costs a call as a large one does.
    explicit Outbox(std::size_t leastBytes) : leastBytes(leastBytes) {}

    void put(quint64 sequence, std::string bytes);
    /// Drops what waits.
    void clear();
    /// The bytes of the batches that the peer has not got yet, as they count.
    std::size_t waiting() const { return bytesWaiting; }
    /// Makes @p call once, as soon as fewer than @p bytes wait: at once, or on the thread that takes batches.
    void whenBelow(std::size_t bytes, std::function<void()> call);

    /// The first batch after @p received, those up to it are dropped. Waits for one, at most for @p patience.
    Entry next(quint64 received, std::chrono::milliseconds patience);
    /// Ends all waiting, for good.
    void close();
    bool isClosed() const;

private:
    std::size_t counted(const std::string &bytes) const { return std::max(bytes.size(), leastBytes); }
    void drop(quint64 received);
    std::function<void()> callThatIsDue();

    const std::size_t leastBytes;
    mutable std::mutex mutex; // guards all below; bytesWaiting is read without it
    std::condition_variable changed;
    std::deque<Entry> entries;
    std::atomic<std::size_t> bytesWaiting = 0;
    std::size_t callBelow = 0;
    std::function<void()> roomCall;
    bool closed = false;
};
} // namespace mirror
