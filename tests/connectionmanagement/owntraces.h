#pragma once

#include "tests/appruntime/capturedtraces.h"

/// What was traced since the last time, without what tics trace meanwhile, also those of earlier tests.
inline std::vector<std::string> take(CapturedTraces &traces)
{
    std::vector<std::string> texts = traces.take();
    std::erase_if(texts, [&](const std::string &text) { return traces.sourceOf(text).starts_with("orbconnection/"); });
    return texts;
}
