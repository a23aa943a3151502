#include "coresupport/errorhandler.h"

#include "coresupport/trace.h"

namespace
{
constexpr char sourceName[] = "coresupport/errorhandler";
constexpr char maskVariable[] = "KORVE_TRACE";
constexpr unsigned defaultMask = static_cast<unsigned>(TraceLevel::Normal);
} // namespace

ErrorHandler::ErrorHandler() : bits(maskFromText(qgetenv(maskVariable))) {}

ErrorHandler &ErrorHandler::Instance()
{
    // Never destroyed: destructors of other statics and threads that outlive main may still trace.
    static ErrorHandler *const instance = new ErrorHandler;
    return *instance;
}

unsigned ErrorHandler::maskFromText(const QByteArray &text)
{
    const QByteArray number = text.trimmed();
    if (number.isEmpty())
        return defaultMask;
    bool readable = false;
    const unsigned mask = number.toUInt(&readable, 0);
    if (readable)
        return mask;
    // Not by traceAt(): this runs while the handler is made.
    _Q_Trace(QStringLiteral("%1 is not a number: '%2'; %3 is used instead")
                 .arg(QLatin1String(maskVariable), QString::fromLocal8Bit(number), QString::number(defaultMask)),
             QLatin1String(sourceName), __LINE__);
    return defaultMask;
}
