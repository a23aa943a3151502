#pragma once

#include "appruntime/threadswitchinghandler.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

class QObject;

namespace ThreadingHelper
{
/// The queue of calls for the main thread. Open from the application's construction to its destruction.
///
/// The calls wait here and not in Qt's event queue, which is only told to come and take one: so waiting callers can be
/// released when the application ends, and the lock that orders the threads is one that the thread sanitizer sees.
class MainThreadDoor
{
public:
    /// The application's; opens and closes with it.
    static MainThreadDoor &instance();

    MainThreadDoor();
    MainThreadDoor(const MainThreadDoor &) = delete;
    ~MainThreadDoor();

    using Poster = std::shared_ptr<const ThreadSwitchingHandler>;
    /// False when the door is closed; @p event is dropped then.
    bool post(RunInMainThreadEvent event, Poster poster);
    /// False when the event loop has ended, or ends while the call waits; @p event does not run then.
    bool executeAndWait(RunInMainThreadEvent event, Poster poster);

    /// An application has run, and is gone: who comes too late then is not to be blamed.
    bool hasClosed();

    /// Makes the calling thread the main thread.
    void open();
    /// The event loop has ended: releases those who wait, and refuses others. Posts are still taken.
    void releaseWaiters();
    /// Drops what has not run.
    void close();

private:
    enum class State { NeverOpened, Open, LoopEnded, Closed };
    struct Call;

    class Receiver;

    bool isMainThread();
    void enqueue(std::shared_ptr<Call> call);
    void wakeReceiver();
    void runDue();
    bool runNext();

    std::mutex mutex; // guards all below
    std::condition_variable progress;
    State state = State::NeverOpened;
    std::thread::id mainThread;
    std::deque<std::shared_ptr<Call>> calls;
    std::unique_ptr<QObject> receiver; // lives on the main thread
    bool receiverWoken = false;
};
} // namespace ThreadingHelper
