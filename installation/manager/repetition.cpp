#include "installation/manager/repetition.h"

namespace installation
{

Repetition::Repetition(std::chrono::milliseconds interval, std::function<void()> work)
    : interval(interval), work(std::move(work))
{
    thread = std::thread(&Repetition::run, this); // not before everything that it uses is there
}

Repetition::~Repetition()
{
    stop();
}

void Repetition::stop()
{
    {
        const std::scoped_lock lock(mutex);
        stopped = true;
    }
    stopping.notify_one();
    if (thread.joinable())
        thread.join();
}

bool Repetition::isStopping()
{
    const std::scoped_lock lock(mutex);
    return stopped;
}

void Repetition::run()
{
    do
        work();
    while (waitForNext());
}

bool Repetition::waitForNext()
{
    std::unique_lock lock(mutex);
    return !stopping.wait_for(lock, interval, [this] { return stopped; });
}

} // namespace installation
