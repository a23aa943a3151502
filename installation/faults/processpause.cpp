#include "installation/faults/processpause.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <system_error>

namespace installation::faults
{

namespace
{

/// In a child of a process with threads, so it calls nothing that takes a lock.
[[noreturn]] void pauseParent(pid_t parent, timespec duration)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::close_range(0, UINT_MAX, 0); // connections and pipes end with the parent
    if (::getppid() == parent)
        ::kill(parent, SIGSTOP);
    while (::nanosleep(&duration, &duration) != 0 && errno == EINTR) {
    }
    if (::getppid() == parent)
        ::kill(parent, SIGCONT);
    ::_exit(0);
}

} // namespace

void standStill(std::chrono::milliseconds duration)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    const timespec rest{seconds.count(), std::chrono::nanoseconds(duration - seconds).count()};
    const pid_t self = ::getpid();
    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error(errno, std::system_category(), "a process cannot be paused");
    if (child == 0)
        pauseParent(self, rest);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace installation::faults
