#pragma once

#include "coresupport/trace.h"

#include <mutex>
#include <string>
#include <vector>

/// Collects the texts traced while it lives; all levels are on meanwhile.
class CapturedTraces
{
public:
    CapturedTraces()
    {
        ErrorHandler::Instance().setTraceMask(96);
        setTraceCapture([this](const TraceLine &line) {
            const std::lock_guard lock(mutex);
            lines.push_back(line.text.toStdString());
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

private:
    const unsigned maskBefore = ErrorHandler::Instance().traceMask();
    mutable std::mutex mutex;
    std::vector<std::string> lines;
};
