#include "coresupport/tracecollapse.h"

#include <gmock/gmock.h>

namespace
{
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Collapse : public testing::Test
{
protected:
    std::vector<std::string> at(std::chrono::milliseconds time, const char *text, const char *source = "a/b")
    {
        return texts(
            collapse.take({QLatin1String(text), QLatin1String(source), 7}, TraceCollapse::Clock::time_point(time)));
    }
    std::vector<std::string> rest() { return texts(collapse.takeRest()); }
    static std::vector<std::string> texts(const std::vector<TraceLine> &lines)
    {
        std::vector<std::string> all;
        for (const TraceLine &line : lines)
            all.push_back(line.text.toStdString());
        return all;
    }
    TraceCollapse collapse;
};

TEST_F(Collapse, PrintsDifferentLinesAtOnce)
{
    EXPECT_THAT(at(0ms, "x"), ElementsAre("x"));
    EXPECT_THAT(at(0ms, "y"), ElementsAre("y"));
    EXPECT_THAT(at(0ms, "x", "c/d"), ElementsAre("x"));
    EXPECT_THAT(rest(), IsEmpty());
}

TEST_F(Collapse, PrintsAnEqualLineOnceASecondWithItsCount)
{
    EXPECT_THAT(at(0ms, "x"), ElementsAre("x"));
    EXPECT_THAT(at(100ms, "x"), IsEmpty());
    EXPECT_THAT(at(999ms, "x"), IsEmpty());
    EXPECT_THAT(at(1000ms, "x"), ElementsAre("x (repeated 2 times)", "x"));
    EXPECT_THAT(at(1500ms, "x"), IsEmpty());
}

TEST_F(Collapse, CountsLinesThatAlternate)
{
    at(0ms, "x");
    at(1ms, "y");
    EXPECT_THAT(at(2ms, "x"), IsEmpty());
    EXPECT_THAT(at(3ms, "y"), IsEmpty());
}

TEST_F(Collapse, ReportsACountWithAnyLaterLineOfTheProcess)
{
    at(0ms, "x");
    at(1ms, "x");
    EXPECT_THAT(at(1200ms, "other", "c/d"), ElementsAre("x (repeated 1 times)", "other"));
}

TEST_F(Collapse, SaysNothingOfALineThatCameOnce)
{
    at(0ms, "x");
    EXPECT_THAT(at(5s, "x"), ElementsAre("x"));
}

TEST_F(Collapse, KeepsSourceAndLineNumberWithTheCount)
{
    at(0ms, "x");
    at(1ms, "x");
    const std::vector<TraceLine> lines = collapse.takeRest();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].sourceName, QLatin1String("a/b"));
    EXPECT_EQ(lines[0].line, 7);
    EXPECT_THAT(rest(), IsEmpty());
}

TEST_F(Collapse, ForgetsTheOldestLineWhenItRemembersTooMany)
{
    at(0ms, "first");
    at(1ms, "first");
    for (std::size_t i = 1; i < TraceCollapse::capacity; ++i)
        at(2ms, std::to_string(i).c_str());
    EXPECT_THAT(at(3ms, "one more"), ElementsAre("first (repeated 1 times)", "one more"));
    EXPECT_THAT(at(4ms, "first"), ElementsAre("first"));
}

TEST_F(Collapse, PutsMarksOfATextOutUntouched)
{
    at(0ms, "%1 %2");
    at(1ms, "%1 %2");
    EXPECT_THAT(rest(), ElementsAre("%1 %2 (repeated 1 times)"));
}
} // namespace
