#pragma once

#include "coresupport/trace.h"

#include <QHash>
#include <QPair>

#include <chrono>
#include <deque>
#include <vector>

/// Thins out repeated lines: of equal lines of one source, one a second passes; the others are counted.
///
/// Remembers at most `capacity` lines. Thread: the caller guards it.
class TraceCollapse
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds interval{1};
    static constexpr std::size_t capacity = 512;

    /// What to print now that @p line has been traced: counts that are due, then the line unless it is counted.
    std::vector<TraceLine> take(const TraceLine &line, Clock::time_point now);
    /// The counts that are still owed; forgets everything.
    std::vector<TraceLine> takeRest();

private:
    using Key = QPair<QString, QString>; // source name, text
    struct Printed {
        TraceLine line;
        Clock::time_point at;
    };

    void forgetOldest(std::vector<TraceLine> &due);

    std::deque<Printed> printed; // oldest first
    QHash<Key, quint64> repeats; // one entry for each in `printed`
};
