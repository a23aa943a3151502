#pragma once

#include "coresupport/trace.h"

#include <string>
#include <utility>
#include <vector>

/// Collects what is traced while it lives, at the level mask given; puts capture and mask back at its end.
class TracedTexts
{
public:
    explicit TracedTexts(unsigned mask = 96) : maskBefore(ErrorHandler::Instance().traceMask())
    {
        ErrorHandler::Instance().setTraceMask(mask);
        captureBefore = setTraceCapture([this](const TraceLine &line) { texts.push_back(line.text.toStdString()); });
    }
    ~TracedTexts()
    {
        setTraceCapture(captureBefore);
        ErrorHandler::Instance().setTraceMask(maskBefore);
    }
    TracedTexts(const TracedTexts &) = delete;
    TracedTexts &operator=(const TracedTexts &) = delete;

    /// What was traced since the last call.
    std::vector<std::string> take() { return std::exchange(texts, {}); }

private:
    const unsigned maskBefore;
    TraceCapture captureBefore;
    std::vector<std::string> texts;
};
