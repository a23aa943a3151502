#include "apps/korvectl/deadline.h"

#include <algorithm>
#include <thread>

using std::chrono::milliseconds;

namespace korvectl
{

milliseconds Deadline::left() const
{
    const auto time = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    return std::max(time, milliseconds::zero());
}

bool Deadline::comesTrue(const std::function<bool(milliseconds)> &answered) const
{
    constexpr milliseconds pause{100};
    while (left() > milliseconds::zero()) {
        if (answered(left()))
            return true;
        std::this_thread::sleep_for(std::min(pause, left()));
    }
    return false;
}

QString Deadline::words() const
{
    return QStringLiteral("within %1 s").arg(static_cast<double>(patience.count()) / 1000);
}

} // namespace korvectl
