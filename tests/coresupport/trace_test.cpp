#include "coresupport/trace.h"

#include <gmock/gmock.h>

#include <QLoggingCategory>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <thread>

namespace
{
using testing::IsEmpty;
using testing::SizeIs;

/// What Qt's message handler is given while the test runs.
struct Printed {
    std::string category, text, file;
    int line;
};
std::mutex printedMutex;
std::vector<Printed> printed;

void keepMessage(QtMsgType, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard lock(printedMutex);
    printed.push_back({context.category, text.toStdString(), context.file, context.line});
}

class Trace : public testing::Test
{
protected:
    Trace()
    {
        printed.clear();
        setTraceCapture([this](const TraceLine &line) { seen.push_back(line); });
        ErrorHandler::Instance().setTraceMask(96);
        handlerBefore = qInstallMessageHandler(keepMessage);
    }
    ~Trace() override
    {
        qInstallMessageHandler(handlerBefore);
        setTraceCapture({});
        ErrorHandler::Instance().setTraceMask(maskBefore);
    }
    std::vector<TraceLine> seen;
    void write(const QString &text, unsigned short line = 1) { _Q_Trace(text, QString::fromStdString(source), line); }
    /// What was printed of this test's source.
    std::vector<Printed> output() const
    {
        const std::lock_guard lock(printedMutex);
        std::vector<Printed> ours;
        std::copy_if(printed.begin(), printed.end(), std::back_inserter(ours),
                     [this](const Printed &message) { return message.file == source; });
        return ours;
    }

    static inline int runs = 0;
    // A source for each run, or lines would be collapsed with those of the run before.
    const std::string source = "coresupport/trace_test" + std::to_string(++runs);
    QtMessageHandler handlerBefore;
    const unsigned maskBefore = ErrorHandler::Instance().traceMask();
};

TEST_F(Trace, EndsInAMessageWithSourceAndLine)
{
    write(QStringLiteral("Geräte: %1 %s"), 65535);
    const std::vector<Printed> messages = output();
    ASSERT_THAT(messages, SizeIs(1));
    EXPECT_EQ(messages[0].text, source + ":65535 Geräte: %1 %s");
    EXPECT_EQ(messages[0].category, "korve");
    EXPECT_EQ(messages[0].line, 65535);
}

TEST_F(Trace, StaysOnOneLine)
{
    const QString text = QStringLiteral("a\r\nb\x1b[2J\tc");
    write(text);
    ASSERT_THAT(output(), SizeIs(1));
    EXPECT_EQ(output()[0].text, source + ":1 a  b [2J\tc");
    EXPECT_EQ(seen.at(0).text, text) << "the capture sees the text as it is";
}

TEST_F(Trace, ShowsTheCaptureEveryLineButPrintsEqualOnesOnce)
{
    for (int i = 0; i < 5; ++i)
        write(QStringLiteral("again and again"));
    EXPECT_THAT(seen, SizeIs(5));
    EXPECT_THAT(output(), SizeIs(1));
}

TEST_F(Trace, IsNotShownToACaptureThatWasTakenAway)
{
    EXPECT_TRUE(setTraceCapture({}));
    write(QStringLiteral("unseen"));
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_THAT(output(), SizeIs(1));
}

TEST_F(Trace, BuildsItsTextOnlyWhenTheLevelIsWanted)
{
    int built = 0;
    const auto build = [&] { return QString::number(++built); };
    ErrorHandler::Instance().setTraceMask(32);
    traceAt(TraceLevel::Debug, source.c_str(), build);
    EXPECT_EQ(built, 0);
    ErrorHandler::Instance().setTraceMask(64);
    traceAt(TraceLevel::Normal, source.c_str(), build);
    EXPECT_EQ(built, 0);
    traceAt(TraceLevel::Debug, source.c_str(), build);
    EXPECT_EQ(built, 1);
}

TEST_F(Trace, CarriesTheLineOfItsCaller)
{
    const int here = __LINE__;
    traceAt(TraceLevel::Normal, source.c_str(), [] { return QStringLiteral("line"); });
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_EQ(seen[0].line, here + 1);
    EXPECT_EQ(seen[0].sourceName, QString::fromStdString(source));
}

TEST_F(Trace, LosesNoLineOfManyThreads)
{
    constexpr int threadCount = 4;
    constexpr int lineCount = 500;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([this, t] {
            for (int i = 0; i < lineCount; ++i)
                write(QStringLiteral("thread %1").arg(t));
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_THAT(seen, SizeIs(threadCount * lineCount));
    EXPECT_GE(output().size(), std::size_t(threadCount));
}
} // namespace
