#include "orbconnection/backgroundthreads.h"

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace CorbaCommon
{
namespace
{
struct Background {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> done;
};

struct Registry {
    // Never destroyed: the ORB, which ends later than other static objects may, uses it.
    static Registry &instance()
    {
        static Registry *const registry = new Registry;
        return *registry;
    }

    std::mutex mutex; // guards the list
    std::list<Background> threads;
    std::atomic<bool> ending = false;
};

void joinThose(std::list<Background> threads)
{
    for (Background &background : threads)
        background.thread.join();
}

std::list<Background> takeEnded(Registry &registry)
{
    std::list<Background> ended;
    const std::lock_guard lock(registry.mutex);
    for (auto it = registry.threads.begin(); it != registry.threads.end();) {
        const auto next = std::next(it);
        if (*it->done)
            ended.splice(ended.end(), registry.threads, it);
        it = next;
    }
    return ended;
}
} // namespace

void runInBackground(std::function<void()> work)
{
    Registry &registry = Registry::instance();
    joinThose(takeEnded(registry)); // before there is another one, which may find no room for it
    const std::lock_guard lock(registry.mutex);
    if (registry.ending)
        return;
    const auto done = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([work = std::move(work), done] {
        work();
        *done = true;
    });
    registry.threads.push_back({std::move(thread), done});
}

bool isBackgroundEnding()
{
    return Registry::instance().ending;
}

void joinBackgroundThreads()
{
    Registry &registry = Registry::instance();
    registry.ending = true;
    for (;;) {
        std::list<Background> all;
        {
            const std::lock_guard lock(registry.mutex);
            all.swap(registry.threads);
        }
        if (all.empty())
            return;
        joinThose(std::move(all)); // one may have begun another
    }
}
} // namespace CorbaCommon
