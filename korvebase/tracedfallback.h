#pragma once

#include "coresupport/trace.h"

namespace KorveCommon::wire
{

/// Traces @p text about @p number and yields @p fallback. The line traced is the caller's.
template <class To>
To tracedFallback(To fallback, qint64 number, const char *text, const char *sourceName,
                  std::source_location caller = std::source_location::current())
{
    traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromLatin1(text).arg(number); }, caller);
    return fallback;
}

} // namespace KorveCommon::wire
