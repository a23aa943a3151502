#pragma once

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <deque>
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
/// Kept until the peer has them. Thread: any; the lock is held for moments only, and never while anything else waits.
class Outbox
{
public:
    using Batch = std::shared_ptr<const std::string>;

    struct Entry {
        quint64 sequence = 0; ///< 0: there is none
        Batch bytes;
        std::size_t counted = 0; ///< towards what may wait
    };

    explicit Outbox(std::size_t maximumBytes) : maximumBytes(maximumBytes) {}

    /// Adds a batch. One that is not @p essential and has no room empties the box and is dropped, with all that follow
    /// until refill(): whoever is that far behind is better off with a new snapshot.
    void put(quint64 sequence, std::string bytes, bool essential);
    /// Ends dropping; drops what is still there.
    void refill();
    /// True once after the box has overflowed.
    bool takeOverflow();

    /// The first batch after @p received, those up to it are dropped. Waits for one, at most for @p patience.
    Entry next(quint64 received, std::chrono::milliseconds patience);
    /// Ends all waiting, for good.
    void close();
    bool isClosed() const;

private:
    Entry firstAfter(quint64 received);

    const std::size_t maximumBytes;
    mutable std::mutex mutex; // guards all below
    std::condition_variable changed;
    std::deque<Entry> entries;
    std::size_t bytesWaiting = 0;
    bool dropping = false;
    bool overflowNoted = false;
    bool closed = false;
};
} // namespace mirror
