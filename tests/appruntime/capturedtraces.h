#pragma once

#include "coresupport/trace.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// Collects what is traced while it lives, at the level mask given: all levels, unless it is told otherwise.
class CapturedTraces
{
public:
    explicit CapturedTraces(unsigned mask = 96)
    {
        ErrorHandler::Instance().setTraceMask(mask);
        setTraceCapture([this](const TraceLine &line) {
            const std::lock_guard lock(mutex);
            lines.push_back(line.text.toStdString());
            sources[lines.back()] = line.sourceName.toStdString();
        });
    }
    CapturedTraces(const CapturedTraces &) = delete;
    ~CapturedTraces()
    {
        setTraceCapture({});
        ErrorHandler::Instance().setTraceMask(maskBefore);
    }
    std::vector<std::string> texts() const
    {
        const std::lock_guard lock(mutex);
        return lines;
    }
    /// Who traced @p text; empty when nobody did.
    std::string sourceOf(const std::string &text) const
    {
        const std::lock_guard lock(mutex);
        const auto found = sources.find(text);
        return found == sources.end() ? std::string() : found->second;
    }
    /// What was traced since the last call.
    std::vector<std::string> take()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(lines, {});
    }
    /// Whether @p part is in one of them.
    bool contain(const std::string &part) const
    {
        const std::lock_guard lock(mutex);
        return std::ranges::any_of(lines, [&](const std::string &line) { return line.find(part) != line.npos; });
    }

private:
    const unsigned maskBefore = ErrorHandler::Instance().traceMask();
    mutable std::mutex mutex;
    std::vector<std::string> lines;
    std::map<std::string, std::string> sources; // by text
};
