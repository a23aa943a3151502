#include "installation/recorder/brokenpipes.h"

#include <csignal>

namespace installation::recorder
{

void blockBrokenPipes()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace installation::recorder
