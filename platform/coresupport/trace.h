#pragma once

#include "coresupport/errorhandler.h"

#include <QString>

#include <functional>

/// One traced line as the tracing code gave it.
struct TraceLine {
    QString text;
    QString sourceName;
    unsigned short line;
};

/// Writes one line to the logging category "korve", whatever the level mask says. Prefer traceAt().
///
/// A line that repeats is printed once a second; the others are counted and reported as "repeated n times" with the
/// next line of the process that comes after that second, at the latest when it exits.
/// Thread: any.  @p sourceName is "directory/file" without ending.
CORESUPPORT_EXPORT void _Q_Trace(const QString &text, const QString &sourceName, unsigned short line); // contract: name

/// Is shown every line before repeated ones are collapsed; one call at a time, on the tracing thread. It must not
/// trace.
using TraceCapture = std::function<void(const TraceLine &)>;

/// Installs @p capture, or none when it is empty, and returns the one before. When this returns, no call of the one
/// before is running any more.
CORESUPPORT_EXPORT TraceCapture setTraceCapture(TraceCapture capture);

/// The way to trace: @p buildText makes the text, and is called only when @p level is wanted. The line is the caller's.
///
///     traceAt(TraceLevel::Normal, sourceName, [&] { return QStringLiteral("no device %1").arg(deviceId); });
template <typename BuildText>
void traceAt(TraceLevel level, const char *sourceName, const BuildText &buildText, int callersLine = __builtin_LINE())
{
    // Not std::source_location: clang 14, which builds the fuzzers, has none.
    if (ErrorHandler::Instance().isTraced(level))
        _Q_Trace(buildText(), QLatin1String(sourceName), static_cast<unsigned short>(callersLine));
}
