#include "apps/korvectl/partialanswer.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

void succeeds() {}
void isRefused()
{
    throw Failure(ExitCode::Refused, QStringLiteral("No."));
}
void hasNoAnswer()
{
    throw Failure(ExitCode::NotReachable, QStringLiteral("Silence."));
}

} // namespace

TEST(PartialAnswer, IsWholeWhenNothingFails)
{
    PartialAnswer answer;
    EXPECT_TRUE(answer.isWorthPrinting()); // of nothing, that there is nothing
    answer.ask(succeeds);
    EXPECT_TRUE(answer.isWorthPrinting());
    EXPECT_EQ(answer.exitCode(), ExitCode::Success);
}

TEST(PartialAnswer, IsPartialWhenSomeFail)
{
    PartialAnswer answer;
    answer.ask(hasNoAnswer);
    answer.ask(succeeds);
    answer.ask(isRefused);
    EXPECT_TRUE(answer.isWorthPrinting());
    EXPECT_EQ(answer.exitCode(), ExitCode::Partial);
}

TEST(PartialAnswer, FailsAsTheWorstWhenAllFail)
{
    PartialAnswer answer;
    answer.ask(isRefused);
    answer.ask(hasNoAnswer);
    EXPECT_FALSE(answer.isWorthPrinting());
    EXPECT_EQ(answer.exitCode(), ExitCode::Refused);
}
