#include "appruntime/runinmainthreadevent.h"
#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;
using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::RunInMainThreadEvent3;

const QString poster = QStringLiteral("a/poster");

class Listener
{
public:
    void hear(const QString &first, int second, QString third)
    {
        heard = QStringLiteral("%1 %2 %3").arg(first, QString::number(second), third);
    }
    void hearFour(const QString &a, const QString &b, const QString &c, const QString &d) { heard = a + b + c + d; }
    int count() const { return ++counted; }

    QString heard;
    mutable int counted = 0;
};

TEST(MainThreadEvent, CallsTheMemberFunctionWithCopiesOfItsArguments)
{
    Listener listener;
    QString first = QStringLiteral("before");
    char third[] = "text";
    const RunInMainThreadEvent3 event(&listener, &Listener::hear, first, 2, third);
    first = QStringLiteral("after");
    third[0] = 'n';
    event.run(poster);
    EXPECT_EQ(listener.heard, QStringLiteral("before 2 text"));
}

TEST(MainThreadEvent, TakesAnyNumberOfArguments)
{
    Listener listener;
    RunInMainThreadEvent(&listener, &Listener::hearFour, "a", "b", "c", "d").run(poster);
    EXPECT_EQ(listener.heard, QStringLiteral("abcd"));
    RunInMainThreadEvent(&listener, &Listener::count).run(poster);
    EXPECT_EQ(listener.counted, 1);
}

TEST(MainThreadEvent, KeepsASharedObjectAlive)
{
    auto listener = std::make_shared<Listener>();
    const std::weak_ptr<Listener> watch = listener;
    {
        const RunInMainThreadEvent event(std::move(listener), &Listener::count);
        EXPECT_FALSE(watch.expired());
        event.run(poster);
        EXPECT_EQ(watch.lock()->counted, 1);
    }
    EXPECT_TRUE(watch.expired());
}

TEST(MainThreadEvent, TracesAnExceptionAndKeepsIt)
{
    const CapturedTraces traces;
    RunInMainThreadEvent([] { throw std::runtime_error("no such node: %1"); }).run(poster);
    RunInMainThreadEvent([] { throw 7; }).run(poster);
    EXPECT_THAT(traces.texts(), ElementsAre("Exception in an event of a/poster: no such node: %1",
                                            "Exception in an event of a/poster: unknown"));
}
} // namespace
