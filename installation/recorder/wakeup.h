#pragma once

namespace installation::recorder
{

/// Wakes a thread that waits for sockets.
///
/// Thread: any wakes; the one that is woken clears before it looks at what is to be done, so that nothing is missed.
class Wakeup
{
public:
    /// @throws RecorderError when the system has no descriptor left.
    Wakeup();
    ~Wakeup();
    Wakeup(const Wakeup &) = delete;

    void wake();
    void clear();
    /// Becomes readable when somebody wakes.
    int descriptor() const { return eventDescriptor; }

private:
    const int eventDescriptor;
};

} // namespace installation::recorder
