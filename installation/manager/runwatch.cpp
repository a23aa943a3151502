#include "installation/manager/runwatch.h"

namespace installation
{

void RunWatch::stop()
{
    {
        const std::scoped_lock lock(mutex);
        stopped = true;
    }
    stopping.notify_all();
    for (Watching &watching : all) // nobody adds any more
        if (watching.thread.joinable())
            watching.thread.join();
}

void RunWatch::add(Look look)
{
    const std::scoped_lock lock(mutex);
    if (stopped)
        return;
    all.remove_if([](Watching &watching) {
        if (watching.done)
            watching.thread.join();
        return watching.done;
    });
    Watching &added = all.emplace_back();
    added.thread = std::thread([this, &added, look = std::move(look)] { run(added, look); });
}

void RunWatch::run(Watching &watching, const Look &look)
{
    while (waitForNextLook() && look())
        continue;
    const std::scoped_lock lock(mutex);
    watching.done = true;
}

bool RunWatch::waitForNextLook()
{
    std::unique_lock lock(mutex);
    return !stopping.wait_for(lock, interval, [this] { return stopped; });
}

} // namespace installation
