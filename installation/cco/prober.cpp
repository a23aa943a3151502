#include "installation/cco/prober.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>

#include <algorithm>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/prober";

// Enough for several silent targets at a time, each of which holds a thread until its limit.
constexpr int workerCount = 4;
constexpr int mostWorkersOfOneSource = workerCount - 1;

void run(const Prober::Target &target)
{
    try {
        target.probe();
    } catch (const CORBA::Exception &e) { // the thread's door: a probe that fails must not end the service
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("The probe of %1 failed: %2")
                .arg(QString::fromStdString(target.key), QLatin1String(e._name()));
        });
    }
}

} // namespace

Prober::Prober(std::chrono::milliseconds interval, Targets targets) : interval(interval), targets(std::move(targets)) {}

Prober::~Prober()
{
    stop();
}

void Prober::start()
{
    threads.emplace_back(&Prober::makeRounds, this);
    for (int i = 0; i < workerCount; ++i)
        threads.emplace_back(&Prober::work, this);
}

void Prober::hurry()
{
    const std::scoped_lock lock(mutex);
    hurried = true;
    roundDue.notify_all();
}

void Prober::stop()
{
    {
        const std::scoped_lock lock(mutex);
        stopping = true;
        roundDue.notify_all();
        workDue.notify_all();
    }
    for (std::thread &thread : threads)
        thread.join();
    threads.clear();
}

void Prober::makeRounds()
{
    for (;;) {
        schedule(targets());
        std::unique_lock lock(mutex);
        roundDue.wait_for(lock, interval, [this] { return stopping || hurried; });
        hurried = false;
        if (stopping)
            return;
    }
}

void Prober::schedule(std::vector<Target> targets)
{
    const std::scoped_lock lock(mutex);
    for (Target &target : targets)
        if (underWay.insert(target.key).second)
            waiting.push_back(std::move(target));
    workDue.notify_all();
}

void Prober::work()
{
    std::unique_lock lock(mutex);
    for (;;) {
        workDue.wait(lock, [this] { return stopping || nextTarget() != waiting.end(); });
        if (stopping)
            return;
        const auto next = nextTarget();
        const Target target = std::move(*next);
        waiting.erase(next);
        ++threadsOfSources[target.source];
        lock.unlock();
        run(target);
        lock.lock();
        underWay.erase(target.key);
        if (--threadsOfSources[target.source] == 0)
            threadsOfSources.erase(target.source);
    }
}

std::deque<Prober::Target>::iterator Prober::nextTarget()
{
    return std::ranges::find_if(waiting, [this](const Target &target) {
        const auto busy = threadsOfSources.find(target.source);
        return busy == threadsOfSources.end() || busy->second < mostWorkersOfOneSource;
    });
}

} // namespace installation
