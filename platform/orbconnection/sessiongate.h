#pragma once

#include "orbconnection/heartbeat.h"
#include "orbconnection/mirrortiming.h"
#include "orbconnection/outbox.h"

#include <QString>

#include <map>
#include <random>
#include <set>
#include <vector>

namespace mirror
{
/// What the main thread and the ORB's threads share of one session.
struct SessionLine {
    SessionLine(const MirrorTiming &timing, const QString &path, const std::string &address, Heartbeat::Clock clock)
        : path(path), address(address), outbox(timing.batchBytes),
          heartbeat(timing.silenceUntilLost() - timing.watchInterval(), std::move(clock))
    {
    }

    const QString path;        ///< what the client mirrors
    const std::string address; ///< where it calls from
    Outbox outbox;
    Heartbeat heartbeat;
    /// Pushed by the client, not yet seen by the main thread; see countedBytes().
    std::atomic<std::size_t> bytesToApply = 0;
    std::atomic<bool> snapshotAsked = false; ///< the main thread has yet to write one
};

/// The sessions of a server, by their numbers. Thread: any; the lock is held for moments only.
class SessionGate
{
public:
    static constexpr std::size_t maximumSessions = 1000;
    /// Those of one address.
    static constexpr std::size_t maximumOfOneAddress = maximumSessions / 4;
    /// What all together may have waiting for the main thread, as a multiple of what one may.
    static constexpr std::size_t fullQueues = 4;
    using Numbered = std::pair<quint64, std::shared_ptr<SessionLine>>;

    explicit SessionGate(const MirrorTiming &timing, Heartbeat::Clock clock = &std::chrono::steady_clock::now)
        : timing(timing), clock(std::move(clock)), mainThread(timing.silenceUntilLost(), this->clock)
    {
    }

    /// The main thread lives; to be called at each watchInterval().
    void beat() { mainThread.beat(); }
    /// It stands still, so that clients are to look elsewhere, as if the process were gone.
    bool isMainThreadLost() const { return mainThread.isLost(); }

    /// A new session with a number that nobody can guess; 0 when there are too many, in all or from @p address (empty: of
    /// this process), or after close().
    quint64 open(const QString &path, const std::string &address);
    /// The sessions that nobody has taken yet.
    std::vector<Numbered> takeNew();
    /// Null, when there is none.
    std::shared_ptr<SessionLine> line(quint64 session) const;
    /// Whoever waits for the session's batches returns. True, when the session had been taken.
    bool remove(quint64 session);
    void close();

    /// Counts bytes that are about to wait for the main thread, whatever becomes of their session. False: too many do.
    bool admit(std::size_t bytes);
    /// They wait no more.
    void release(std::size_t bytes) { bytesToApply -= bytes; }

private:
    bool isFullFor(const std::string &address) const;

    const MirrorTiming timing;
    const Heartbeat::Clock clock;
    Heartbeat mainThread;
    mutable std::mutex mutex; // guards all below
    std::map<quint64, std::shared_ptr<SessionLine>> lines;
    std::set<quint64> untaken;
    std::random_device random;
    bool closed = false;
    std::atomic<std::size_t> bytesToApply = 0;
};
} // namespace mirror
