#include "installation/recorder/sessionthread.h"

#include "installation/recorder/brokenpipes.h"

namespace installation::recorder
{

void SessionThread::begin(std::function<void()> work)
{
    thread = std::thread([work = std::move(work)] {
        blockBrokenPipes();
        work();
    });
}

void SessionThread::stop()
{
    askToEnd();
    const std::scoped_lock lock(stopping);
    if (thread.joinable())
        thread.join();
}

} // namespace installation::recorder
