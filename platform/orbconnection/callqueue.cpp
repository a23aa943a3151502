#include "orbconnection/callqueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace CorbaCommon
{
void CallQueue::post(std::function<void()> call)
{
    {
        const std::lock_guard lock(mutex);
        calls.push_back(std::move(call));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void CallQueue::customEvent(QEvent *)
{
    std::function<void()> call; // dies without the lock
    {
        const std::lock_guard lock(mutex);
        if (calls.empty())
            return;
        call = std::move(calls.front());
        calls.pop_front();
    }
    call();
}
} // namespace CorbaCommon
