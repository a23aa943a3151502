#pragma once

#include "coresupport/trace.h"

namespace KorveCommon::wire
{

/// Traces @p text about @p number and yields @p fallback. The line traced is the caller's.
template <class To>
To tracedFallback(To fallback, qint64 number, const char *text, const char *sourceName,
                  int callersLine = __builtin_LINE())
{
    traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromLatin1(text).arg(number); }, callersLine);
    return fallback;
}

} // namespace KorveCommon::wire
