#include "appruntime/mainthreaddoor.h"

#include <QCoreApplication>
#include <QEvent>

namespace ThreadingHelper
{
struct MainThreadDoor::Call {
    enum class Progress { Pending, Running, Done, GivenUp };

    const RunInMainThreadEvent event;
    const Poster poster;
    Progress progress = Progress::Pending;
};

class MainThreadDoor::Receiver : public QObject
{
public:
    explicit Receiver(MainThreadDoor &door) : door(door) {}

    // Whatever custom event comes means that calls wait. Looking at it would be a race to the thread sanitizer, which
    // does not see that Qt handed it over from another thread.
    void customEvent(QEvent *) override { door.runDue(); }

private:
    MainThreadDoor &door;
};

MainThreadDoor::MainThreadDoor() = default;
MainThreadDoor::~MainThreadDoor() = default;

MainThreadDoor &MainThreadDoor::instance()
{
    // Never destroyed: threads may outlive main, and are to find the door closed.
    static MainThreadDoor *const door = new MainThreadDoor;
    return *door;
}

bool MainThreadDoor::post(RunInMainThreadEvent event, Poster poster)
{
    const auto call = std::make_shared<Call>(Call{std::move(event), std::move(poster)});
    const std::lock_guard lock(mutex);
    if (state == State::NeverOpened || state == State::Closed)
        return false;
    enqueue(call);
    return true;
}

bool MainThreadDoor::hasClosed()
{
    const std::lock_guard lock(mutex);
    return state == State::Closed;
}

bool MainThreadDoor::executeAndWait(RunInMainThreadEvent event, Poster poster)
{
    if (isMainThread()) {
        event.run(poster->sourceName());
        return true;
    }
    const auto call = std::make_shared<Call>(Call{std::move(event), std::move(poster)});
    std::unique_lock lock(mutex);
    if (state != State::Open)
        return false;
    enqueue(call);
    progress.wait(lock, [&] {
        return call->progress == Call::Progress::Done ||
               (call->progress == Call::Progress::Pending && state != State::Open);
    });
    if (call->progress == Call::Progress::Done)
        return true;
    call->progress = Call::Progress::GivenUp; // its turn may still come
    return false;
}

void MainThreadDoor::open()
{
    const std::lock_guard lock(mutex);
    mainThread = std::this_thread::get_id();
    receiver = std::make_unique<Receiver>(*this);
    receiverWoken = false;
    state = State::Open;
}

void MainThreadDoor::releaseWaiters()
{
    const std::lock_guard lock(mutex);
    state = State::LoopEnded;
    progress.notify_all();
}

void MainThreadDoor::close()
{
    // Destroyed without the lock: what the calls hold may itself come to this door when it dies.
    std::deque<std::shared_ptr<Call>> dropped;
    std::unique_ptr<QObject> oldReceiver;
    const std::lock_guard lock(mutex);
    state = State::Closed;
    dropped.swap(calls);
    oldReceiver.swap(receiver);
    progress.notify_all();
}

bool MainThreadDoor::isMainThread()
{
    const std::lock_guard lock(mutex);
    return mainThread == std::this_thread::get_id();
}

void MainThreadDoor::enqueue(std::shared_ptr<Call> call)
{
    calls.push_back(std::move(call));
    wakeReceiver();
}

void MainThreadDoor::wakeReceiver()
{
    if (receiverWoken)
        return;
    receiverWoken = true;
    QCoreApplication::postEvent(receiver.get(), new QEvent(QEvent::User));
}

void MainThreadDoor::runDue()
{
    std::unique_lock lock(mutex);
    receiverWoken = false;
    std::size_t due = calls.size(); // those that come meanwhile wait, so that other events have their turn
    lock.unlock();
    while (due > 0 && runNext())
        --due;
}

bool MainThreadDoor::runNext()
{
    std::shared_ptr<Call> call; // dies after the lock, as in close()
    std::unique_lock lock(mutex);
    if (calls.empty())
        return false;
    call = std::move(calls.front());
    calls.pop_front();
    if (call->progress == Call::Progress::GivenUp)
        return true;
    call->progress = Call::Progress::Running;
    // Before the call: should it start an event loop of its own, that loop runs the rest.
    if (!calls.empty())
        wakeReceiver();
    lock.unlock();

    call->event.run(call->poster->sourceName());

    lock.lock();
    call->progress = Call::Progress::Done;
    progress.notify_all();
    return true;
}
} // namespace ThreadingHelper

namespace
{
void openForApplication()
{
    using ThreadingHelper::MainThreadDoor;
    MainThreadDoor::instance().open();
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [] { MainThreadDoor::instance().releaseWaiters(); });
    qAddPostRoutine([] { MainThreadDoor::instance().close(); });
}

Q_COREAPP_STARTUP_FUNCTION(openForApplication)
} // namespace
