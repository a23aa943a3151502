#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

namespace CorbaCommon
{
/// Calls on their way to the thread that this lives on, made there in the order of posting. Dropped with this object.
///
/// Qt's queued calls would do the same; but what Qt hands from thread to thread, the thread sanitizer does not see, and
/// would take for a race.
class CallQueue : public QObject
{
public:
    /// Thread: any.
    void post(std::function<void()> call);

protected:
    /// Whatever custom event comes means that calls wait; it is not looked at, see above.
    void customEvent(QEvent *event) override;

private:
    std::mutex mutex; // guards the queue
    std::deque<std::function<void()>> calls;
};
} // namespace CorbaCommon
