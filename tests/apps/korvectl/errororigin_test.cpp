#include "apps/korvectl/errororigin.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

std::vector<std::string> flowsKnowing(unsigned long number)
{
    std::vector<std::string> names;
    for (const NamedFlow &named : allFlows())
        if (isKnown(number, named.flow))
            names.emplace_back(named.name);
    return names;
}

} // namespace

TEST(ErrorOrigin, KnowsWhichFlowsHaveASentenceForJustThisNumber)
{
    EXPECT_THAT(flowsKnowing(10034), testing::ElementsAre("Admin", "AddBookmark"));
    EXPECT_THAT(flowsKnowing(850), testing::ElementsAre("StartRecording"));
    EXPECT_THAT(flowsKnowing(101), testing::ElementsAre("History"));
    EXPECT_THAT(flowsKnowing(501), testing::IsEmpty());
    EXPECT_THAT(flowsKnowing(4'000'000'000), testing::IsEmpty());
}

TEST(ErrorOrigin, NamesTheKindOfAnException)
{
    EXPECT_EQ(originOf(10012), QLatin1String("TQ_KORVE::exKorve::ekINVALID_RECORD_ID"));
    EXPECT_EQ(originOf(10034), QLatin1String("TQ_KORVE::exKorve::ekBOOKMARK_ALREADY_EXISTS"));
    EXPECT_EQ(originOf(907), QLatin1String("LLDCmodule::exLLDC::ekDataRateUnavailable"));
    EXPECT_EQ(originOf(758), QLatin1String("TQ_KRV::IF_KRV_c_ChanMan::exChanMan::Fault"));
    EXPECT_TRUE(originOf(501).startsWith(QLatin1String("TQ_KRV::IF_KORVE_Admin::exAdmin::Invalid_RecordId; ")));
    EXPECT_TRUE(originOf(703).startsWith(QLatin1String("TQ_KRV::exGen::Maximum_Number_Channels_Reached; ")));
}

TEST(ErrorOrigin, SaysWhoAnswersTheOthers)
{
    for (const unsigned long number : {0ul, 5ul, 27ul, 101ul, 210ul, 211ul, 212ul, 502ul, 761ul, 7000ul, 20003ul})
        EXPECT_FALSE(originOf(number).isEmpty()) << number;
    for (const unsigned long number : {6ul, 759ul, 908ul, 10035ul, 4'000'000'000ul})
        EXPECT_TRUE(originOf(number).isEmpty()) << number << originOf(number).toStdString();
}

TEST(ErrorOrigin, HasAWordForEveryNumberInEveryFlow)
{
    const QString about = QStringLiteral("R1");
    EXPECT_EQ(sentenceFor(10012, Flow::AddBookmark, about),
              QLatin1String("Id: 10012 : Could not add a bookmark, as a record with the specified record id 'R1' does "
                            "not exist."));
    EXPECT_EQ(sentenceFor(502, Flow::Admin, about),
              QLatin1String("Id: 502 : the manager: the device is not reachable"));
    EXPECT_EQ(sentenceFor(6, Flow::History, about), QLatin1String("Id: 6 : a number that nothing is known of"));
    for (const NamedFlow &named : allFlows())
        EXPECT_EQ(flowNamed(QLatin1String(named.name)), named.flow);
}

TEST(ErrorOrigin, KnowsWhereEveryNumberOfEveryFlowComesFrom)
{
    for (unsigned long number = 0; number < 21000; ++number) {
        EXPECT_TRUE(flowsKnowing(number).empty() || !originOf(number).isEmpty()) << number;
    }
}
