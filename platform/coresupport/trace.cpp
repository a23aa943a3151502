#include "coresupport/trace.h"

#include "coresupport/tracecollapse.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cstdlib>
#include <mutex>

namespace
{
Q_LOGGING_CATEGORY(category, "korve")

/// Texts hold names and documents from outside: none of them may forge a second line or steer a terminal.
QString onOneLine(QString text)
{
    const auto breaksLine = [](QChar c) { return c.category() == QChar::Other_Control && c != QLatin1Char('\t'); };
    if (std::any_of(text.cbegin(), text.cend(), breaksLine))
        std::replace_if(text.begin(), text.end(), breaksLine, QChar(QLatin1Char(' ')));
    return text;
}

void print(const std::vector<TraceLine> &lines)
{
    if (!category().isInfoEnabled())
        return;
    for (const TraceLine &line : lines) {
        const QByteArray source = line.sourceName.toUtf8();
        QMessageLogger(source.constData(), line.line, nullptr, category().categoryName())
            .info("%s:%hu %s", source.constData(), line.line, onOneLine(line.text).toUtf8().constData());
    }
}

/// Lines come from any thread and must be seen in order, so this is one of the few places with a lock.
class Sink
{
public:
    static Sink &instance()
    {
        static Sink *const sink = new Sink; // never destroyed, for the reason given in ErrorHandler::Instance()
        return *sink;
    }

    void write(const TraceLine &line)
    {
        show(line);
        // Printed without the lock, since an installed message handler may trace itself.
        print(collapsed(line));
    }

    TraceCapture exchangeCapture(TraceCapture next)
    {
        const std::lock_guard lock(captureMutex);
        return std::exchange(capture, std::move(next));
    }

private:
    Sink()
    {
        category(); // made before the line below, and so destroyed after it has run
        std::atexit([] { print(instance().rest()); });
    }

    void show(const TraceLine &line)
    {
        const std::lock_guard lock(captureMutex);
        if (capture)
            capture(line);
    }
    std::vector<TraceLine> collapsed(const TraceLine &line)
    {
        const std::lock_guard lock(collapseMutex);
        return collapse.take(line, TraceCollapse::Clock::now());
    }
    std::vector<TraceLine> rest()
    {
        const std::lock_guard lock(collapseMutex);
        return collapse.takeRest();
    }

    std::mutex captureMutex;
    TraceCapture capture;
    std::mutex collapseMutex;
    TraceCollapse collapse;
};
} // namespace

void _Q_Trace(const QString &text, const QString &sourceName, unsigned short line)
{
    Sink::instance().write({text, sourceName, line});
}

TraceCapture setTraceCapture(TraceCapture capture)
{
    return Sink::instance().exchangeCapture(std::move(capture));
}
