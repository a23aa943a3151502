#include "coresupport/trace.h"

#include <gmock/gmock.h>

#include <QLoggingCategory>

#include <mutex>
#include <thread>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char sourceName[] = "coresupport/trace_test";

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
    QtMessageHandler handlerBefore;
    const unsigned maskBefore = ErrorHandler::Instance().traceMask();
};

TEST_F(Trace, EndsInAMessageWithSourceAndLine)
{
    _Q_Trace(QStringLiteral("Geräte: %1 %s"), QLatin1String(sourceName), 65535);
    ASSERT_THAT(printed, SizeIs(1));
    EXPECT_EQ(printed[0].text, "coresupport/trace_test:65535 Geräte: %1 %s");
    EXPECT_EQ(printed[0].category, "korve");
    EXPECT_EQ(printed[0].file, sourceName);
    EXPECT_EQ(printed[0].line, 65535);
}

TEST_F(Trace, StaysOnOneLine)
{
    _Q_Trace(QStringLiteral("a\r\nb\x1b[2J\tc"), QLatin1String(sourceName), 1);
    ASSERT_THAT(printed, SizeIs(1));
    EXPECT_EQ(printed[0].text, "coresupport/trace_test:1 a  b [2J\tc");
    EXPECT_EQ(seen.at(0).text, QStringLiteral("a\r\nb\x1b[2J\tc")) << "the capture sees the text as it is";
}

TEST_F(Trace, ShowsTheCaptureEveryLineButPrintsEqualOnesOnce)
{
    for (int i = 0; i < 5; ++i)
        _Q_Trace(QStringLiteral("again and again"), QLatin1String(sourceName), 1);
    EXPECT_THAT(seen, SizeIs(5));
    EXPECT_THAT(printed, SizeIs(1));
}

TEST_F(Trace, IsNotShownToACaptureThatWasTakenAway)
{
    EXPECT_TRUE(setTraceCapture({}));
    _Q_Trace(QStringLiteral("unseen"), QLatin1String(sourceName), 1);
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(Trace, BuildsItsTextOnlyWhenTheLevelIsWanted)
{
    int built = 0;
    const auto build = [&] { return QString::number(++built); };
    ErrorHandler::Instance().setTraceMask(32);
    traceAt(TraceLevel::Debug, sourceName, build);
    EXPECT_EQ(built, 0);
    ErrorHandler::Instance().setTraceMask(64);
    traceAt(TraceLevel::Normal, sourceName, build);
    EXPECT_EQ(built, 0);
    traceAt(TraceLevel::Debug, sourceName, build);
    EXPECT_EQ(built, 1);
}

TEST_F(Trace, CarriesTheLineOfItsCaller)
{
    const int here = __LINE__;
    traceAt(TraceLevel::Normal, sourceName, [] { return QStringLiteral("line"); });
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_EQ(seen[0].line, here + 1);
    EXPECT_EQ(seen[0].sourceName, QLatin1String(sourceName));
}

TEST_F(Trace, LosesNoLineOfManyThreads)
{
    constexpr int threadCount = 4;
    constexpr int lineCount = 500;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < lineCount; ++i)
                _Q_Trace(QStringLiteral("thread %1").arg(t), QLatin1String(sourceName), 1);
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_THAT(seen, SizeIs(threadCount * lineCount));
    EXPECT_GE(printed.size(), std::size_t(threadCount));
}
} // namespace
