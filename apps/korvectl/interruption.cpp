#include "apps/korvectl/interruption.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>

#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace korvectl
{

namespace
{

volatile std::sig_atomic_t descriptor = -1;

/// By a handler, since the threads of the ORB, which are there already, take signals, too.
void note(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(descriptor, &one, sizeof one); // a full counter is noted as well
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND); // whoever insists is obeyed
    ::sigaction(signal, &action, nullptr);
}

} // namespace

Interruption::Interruption()
{
    descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto *const notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT si_interrupted();
    });
    handle(SIGINT, note);
    handle(SIGTERM, note);
}

Interruption::~Interruption()
{
    handle(SIGINT, SIG_DFL);
    handle(SIGTERM, SIG_DFL);
    ::close(descriptor);
    descriptor = -1;
}

void whenUnread(QObject &context, const std::function<void()> &quit)
{
    auto *const end = new QSocketNotifier(STDOUT_FILENO, QSocketNotifier::Exception, &context);
    QObject::connect(end, &QSocketNotifier::activated, &context, [end, quit] {
        end->setEnabled(false);
        quit();
    });
}

void runUntil(const Interruption &interruption, QEventLoop &loop, std::chrono::milliseconds limit)
{
    QObject::connect(&interruption, &Interruption::si_interrupted, &loop, &QEventLoop::quit);
    whenUnread(loop, [&loop] { loop.quit(); });
    if (limit.count() > 0)
        QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace korvectl
