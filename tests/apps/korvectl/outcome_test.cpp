#include "apps/korvectl/outcome.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

const Deed comment{Flow::Admin, QStringLiteral("setting the comment of record R1 on REC1"), QStringLiteral("R1"),
                   QStringLiteral("korvectl record show REC1 R1")};

QString wordsOf(const Failure &failure)
{
    return QString::fromUtf8(failure.what());
}

} // namespace

TEST(Outcome, IsAFailureWithNumberAndSentence)
{
    const Failure failure = failureOf({10012, false}, comment);
    EXPECT_EQ(failure.exitCode, ExitCode::Refused);
    EXPECT_EQ(wordsOf(failure),
              QLatin1String("Setting the comment of record R1 on REC1 failed: Id: 10012 : The specified record Id "
                            "doesn't match any record. R1."));
}

TEST(Outcome, GivesTheReasonInPlaceOfTheSentence)
{
    const Failure failure = failureOf({10012, false, QStringLiteral("it has gone")}, comment);
    EXPECT_EQ(failure.exitCode, ExitCode::Refused);
    EXPECT_EQ(wordsOf(failure),
              QLatin1String("Setting the comment of record R1 on REC1 failed: Id: 10012 : it has gone."));
}

TEST(Outcome, HasAWordForEveryNumberInEveryFlow)
{
    const QString about = QStringLiteral("R1");
    EXPECT_EQ(sentenceFor(10012, Flow::AddBookmark, about),
              QLatin1String("Id: 10012 : Could not add a bookmark, as a record with the specified record id 'R1' does "
                            "not exist."));
    EXPECT_EQ(sentenceFor(502, Flow::Admin, about),
              QLatin1String("Id: 502 : the manager: the device is not reachable"));
    EXPECT_EQ(sentenceFor(8, Flow::History, about), QLatin1String("Id: 8 : a number that nothing is known of"));
}

TEST(Outcome, ThatIsUnknownIsNeverToldAsFailed)
{
    const Failure failure = failureOf({210, true}, comment);
    EXPECT_EQ(failure.exitCode, ExitCode::Unknown);
    EXPECT_FALSE(wordsOf(failure).contains(QLatin1String("failed")));
    EXPECT_TRUE(wordsOf(failure).startsWith(
        QLatin1String("The outcome of setting the comment of record R1 on REC1 is unknown")));
    EXPECT_TRUE(wordsOf(failure).contains(QLatin1String("(Id: 210 : the ORB, CORBA::TRANSIENT: ")))
        << "what has happened, not what it would mean for a request that was refused";
    EXPECT_TRUE(wordsOf(failure).endsWith(QLatin1String("Check it with: korvectl record show REC1 R1")));
}

TEST(Outcome, OfAMereQuestionIsNeverUnknown)
{
    EXPECT_EQ(failureOf({210, true}, {Flow::Admin, comment.words, comment.about}).exitCode, ExitCode::NotReachable);
}

TEST(Outcome, TellsReachingFromRefusing)
{
    EXPECT_EQ(exitCodeOf(0), ExitCode::Success);
    for (const unsigned long number : {5ul, 101ul, 210ul, 502ul})
        EXPECT_EQ(exitCodeOf(number), ExitCode::NotReachable) << number;
    for (const unsigned long number : {211ul, 212ul, 7000ul})
        EXPECT_EQ(exitCodeOf(number), ExitCode::Failed) << number;
    for (const unsigned long number : {27ul, 501ul, 768ul, 10019ul})
        EXPECT_EQ(exitCodeOf(number), ExitCode::Refused) << number;
}

TEST(Outcome, IsNothingToThrowForSuccess)
{
    EXPECT_NO_THROW(require({0, false}, comment));
    EXPECT_THROW(require({5, false}, comment), Failure);
}

TEST(Outcome, NamesACommandThatAShellTakes)
{
    CommandLine line;
    EXPECT_EQ(commandText(line, {QStringLiteral("records"), QStringLiteral("K\u00f6ln 1's")}),
              QStringLiteral("korvectl records 'K\u00f6ln 1'\\''s'"));
    line.subsystem = QStringLiteral("West");
    EXPECT_EQ(commandText(line, {QStringLiteral("records")}), QLatin1String("korvectl --subsystem West records"));
}
