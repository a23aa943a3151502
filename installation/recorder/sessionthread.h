#pragma once

#include <functional>
#include <mutex>
#include <thread>

namespace installation::recorder
{

/// What works behind a session, on a thread of its own.
///
/// Who derives from it calls begin() last in the constructor, and stop() first in the destructor.
class SessionThread
{
public:
    SessionThread() = default;
    SessionThread(const SessionThread &) = delete;
    virtual ~SessionThread() = default;

    /// Ends it and waits for the end, any number of times; not on its own thread.
    void stop();

protected:
    void begin(std::function<void()> work);

private:
    /// Never waits.
    virtual void askToEnd() = 0;

    std::mutex stopping; // for who comes second
    std::thread thread;
};

} // namespace installation::recorder
