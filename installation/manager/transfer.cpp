#include "installation/manager/transfer.h"

namespace installation
{

namespace
{

constexpr CORBA::ULong transferDone = 3;
constexpr CORBA::ULong transferFailed = 4;

} // namespace

void Transfer::begin()
{
    const std::scoped_lock lock(mutex);
    if (state != State::Cancelled)
        state = State::Running;
    failure.clear();
}

void Transfer::end(bool success, const QString &reason)
{
    const std::scoped_lock lock(mutex);
    if (state != State::Running)
        return;
    state = success ? State::Done : State::Failed;
    failure = reason;
    changed.notify_all();
}

void Transfer::cancel()
{
    const std::scoped_lock lock(mutex);
    state = State::Cancelled;
    changed.notify_all();
}

Transfer::State Transfer::wait(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex);
    changed.wait_for(lock, limit, [this] { return state != State::Running; });
    return state;
}

QString Transfer::reason()
{
    const std::scoped_lock lock(mutex);
    return failure;
}

void TransferReceiver::processNotification(const TQ_KORVE_IT::struNotification &arg1)
{
    if (arg1.notification == transferDone || arg1.notification == transferFailed)
        transfer->end(arg1.notification == transferDone, QString::fromUtf8(arg1.text));
}

} // namespace installation
