#pragma once

namespace installation::recorder
{

/// What works behind a session, on a thread of its own.
class SessionThread
{
public:
    virtual ~SessionThread() = default;
    /// Ends it and waits for the end, any number of times; not on its own thread.
    virtual void stop() = 0;
};

} // namespace installation::recorder
