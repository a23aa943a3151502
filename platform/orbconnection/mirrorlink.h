#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/outbox.h"
#include "orbconnection/valuetree.hh"

#include <QString>

#include <atomic>
#include <functional>

namespace mirror
{
/// One session of a client with a server, as the client's threads and the main thread share it.
struct LinkSession {
    explicit LinkSession(const MirrorTiming &timing) : outbox(timing.batchBytes) {}

    VALUETREE::TreeServer_var server;
    quint64 number = 0;
    Outbox outbox;                           ///< to the server; closing it ends the session
    std::atomic<bool> wantsSnapshot = false; ///< batches are missing
    std::atomic<bool> isComplete = false;    ///< the main thread has applied a whole snapshot
    /// Received, not yet seen by the main thread; see countedBytes().
    std::atomic<std::size_t> bytesToApply = 0;
};

/// The client's way to a server: connects, again and again, and carries batches both ways, on threads of its own.
///
/// Thread: any. What it tells, it tells on those threads.
class MirrorLink : public std::enable_shared_from_this<MirrorLink>
{
public:
    struct Events {
        std::function<void(std::shared_ptr<LinkSession>)> begun;
        std::function<void(std::shared_ptr<LinkSession>, std::string batch)> received;
        std::function<void(std::shared_ptr<LinkSession>)> ended;
    };

    /// @p reference is the server's, as text; @p where is how traces name it.
    MirrorLink(const QString &reference, const QString &where, const QString &serverPath, const MirrorTiming &timing,
               Events events);

    void start();
    /// Returns at once; the threads end as soon as the call that each is in does.
    void stop();

private:
    void run();
    void pause(std::size_t failures);
    std::shared_ptr<LinkSession> open();
    void carry(const std::shared_ptr<LinkSession> &session);
    void carryOne(const std::shared_ptr<LinkSession> &session, quint64 &received, std::string &batch);
    bool pullOne(LinkSession &session, quint64 &received, std::string &batch);
    void push(const std::shared_ptr<LinkSession> &session);
    void pushAll(LinkSession &session);
    void pauseShortly();
    /// False, with a note of the trouble, when @p call throws.
    template <typename Call> bool attempt(const Call &call);
    /// Attempts a remote call, and notes that the server answers when it succeeds.
    template <typename Call> bool succeeds(const Call &call);
    void note(const QString &newTrouble);

    const QString reference;
    const QString where;
    const QString serverPath;
    const MirrorTiming timing;
    const Events events;
    std::mutex mutex; // guards the three members below
    std::condition_variable stopping;
    bool stopped = false;
    std::shared_ptr<LinkSession> current;
    QString trouble; // the connecting thread's: what was traced last
};
} // namespace mirror
