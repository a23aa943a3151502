#include "coresupport/tracecollapse.h"

std::vector<TraceLine> TraceCollapse::take(const TraceLine &line, Clock::time_point now)
{
    std::vector<TraceLine> due;
    while (!printed.empty() && now - printed.front().at >= interval)
        forgetOldest(due);

    const Key key(line.sourceName, line.text);
    const auto known = repeats.find(key);
    if (known != repeats.end()) {
        ++known.value();
        return due;
    }
    if (printed.size() == capacity)
        forgetOldest(due);
    repeats.insert(key, 0);
    printed.push_back({line, now});
    due.push_back(line);
    return due;
}

std::vector<TraceLine> TraceCollapse::takeRest()
{
    std::vector<TraceLine> due;
    while (!printed.empty())
        forgetOldest(due);
    return due;
}

void TraceCollapse::forgetOldest(std::vector<TraceLine> &due)
{
    TraceLine line = std::move(printed.front().line);
    printed.pop_front();
    const quint64 count = repeats.take(Key(line.sourceName, line.text));
    if (count == 0)
        return;
    line.text = QStringLiteral("%1 (repeated %2 times)").arg(line.text, QString::number(count));
    due.push_back(std::move(line));
}
