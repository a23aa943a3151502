#pragma once

#include <QString>

#include <chrono>
#include <functional>

namespace korvectl
{

/// The end of one command's patience.
class Deadline
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Deadline(std::chrono::milliseconds patience) : patience(patience), end(Clock::now() + patience) {}

    /// Zero when it has passed.
    std::chrono::milliseconds left() const;
    /// Asks until @p answered, which is given the time that is left, says yes. False when time is up. Blocks.
    bool comesTrue(const std::function<bool(std::chrono::milliseconds)> &answered) const;
    /// "within 2.5 s"
    QString words() const;

private:
    const std::chrono::milliseconds patience;
    const Clock::time_point end;
};

} // namespace korvectl
