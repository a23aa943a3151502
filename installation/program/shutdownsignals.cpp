#include "installation/program/shutdownsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace installation
{

ShutdownSignals::ShutdownSignals()
{
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGTERM);
    ::sigaddset(&signals, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC);
    if (descriptor < 0)
        throw std::system_error(errno, std::system_category(), "signals cannot be awaited");
    auto *const notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier] {
        notifier->setEnabled(false); // one is enough
        QCoreApplication::quit();
    });
}

ShutdownSignals::~ShutdownSignals()
{
    ::close(descriptor);
}

} // namespace installation
