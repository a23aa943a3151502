#include "connectionmanagement/errorcatalogue.h"

#include <gmock/gmock.h>

#include <set>

using KorveCommon::ToolbarHelper;
using KorveManagement::ErrorCatalogue;
using KorveManagement::TraceError;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
constexpr unsigned long largest = 21000; ///< beyond all that has a meaning

std::vector<std::string> tablesKnowing(unsigned long number)
{
    std::vector<std::string> names;
    for (const ErrorCatalogue::NamedTable &named : ErrorCatalogue::tables())
        if (ErrorCatalogue::isKnown(number, named.table))
            names.emplace_back(named.name);
    return names;
}

TEST(ErrorCatalogue, KnowsWhichTablesHaveASentenceForJustThisNumber)
{
    EXPECT_THAT(tablesKnowing(10034), ElementsAre("Admin", "AddBookmark"));
    EXPECT_THAT(tablesKnowing(850), ElementsAre("StartRecording"));
    EXPECT_THAT(tablesKnowing(101), ElementsAre("History", "ToolbarActions"));
    EXPECT_THAT(tablesKnowing(150), ElementsAre("ToolbarActions"));
    EXPECT_THAT(tablesKnowing(190), ElementsAre("ToolbarRecords"));
    EXPECT_THAT(tablesKnowing(223), ElementsAre("ToolbarRecords"));
    EXPECT_THAT(tablesKnowing(257), ElementsAre("ToolbarActions"));
    for (unsigned long number = 201; number <= 205; ++number)
        EXPECT_THAT(tablesKnowing(number), ElementsAre("ToolbarActions", "ToolbarRecords")) << number;
    EXPECT_THAT(tablesKnowing(501), IsEmpty());
    EXPECT_THAT(tablesKnowing(4'000'000'000), IsEmpty());
}

TEST(ErrorCatalogue, HasTheSentencesOfItsTables)
{
    const QString about = QStringLiteral("R1");
    EXPECT_EQ(ErrorCatalogue::sentence(10034, TraceError::AddBookmark, about),
              TraceError::toText(10034, TraceError::AddBookmark, about));
    EXPECT_EQ(ErrorCatalogue::sentence(150, ToolbarHelper::ActionErrors, about),
              QLatin1String("(150) Cannot copy as there is no record information available."));
    EXPECT_EQ(ErrorCatalogue::sentence(190, ToolbarHelper::RecordErrors, about),
              QLatin1String("(190) Cannot save the history entry as Korve device not available."));
    EXPECT_EQ(ErrorCatalogue::sentence(1ul << 32 | 190, ToolbarHelper::RecordErrors, about), QString());
}

TEST(ErrorCatalogue, NamesEachTableOnce)
{
    std::set<std::string> names;
    for (const ErrorCatalogue::NamedTable &named : ErrorCatalogue::tables())
        names.insert(named.name);
    EXPECT_EQ(names.size(), 14u);
}

TEST(ErrorCatalogue, NamesTheKindOfAnException)
{
    const auto origin = ErrorCatalogue::origin;
    EXPECT_EQ(origin(10012), QLatin1String("TQ_KORVE::exKorve::ekINVALID_RECORD_ID"));
    EXPECT_EQ(origin(10034), QLatin1String("TQ_KORVE::exKorve::ekBOOKMARK_ALREADY_EXISTS"));
    EXPECT_EQ(origin(907), QLatin1String("LLDCmodule::exLLDC::ekDataRateUnavailable"));
    EXPECT_EQ(origin(758), QLatin1String("TQ_KRV::IF_KRV_c_ChanMan::exChanMan::Fault"));
    EXPECT_TRUE(origin(501).startsWith(QLatin1String("TQ_KRV::IF_KORVE_Admin::exAdmin::Invalid_RecordId; ")));
    EXPECT_TRUE(origin(703).startsWith(QLatin1String("TQ_KRV::exGen::Maximum_Number_Channels_Reached; ")));
}

TEST(ErrorCatalogue, SaysWhoAnswersTheOthers)
{
    for (const unsigned long number :
         {0ul, 5ul, 27ul, 101ul, 201ul, 202ul, 203ul, 205ul, 210ul, 211ul, 212ul, 502ul, 761ul, 7000ul, 20003ul})
        EXPECT_FALSE(ErrorCatalogue::origin(number).contains(QLatin1String("toolbar"))) << number;
    for (const unsigned long number : {150ul, 190ul, 204ul, 223ul, 257ul})
        EXPECT_EQ(ErrorCatalogue::origin(number), QLatin1String("a toolbar of a client")) << number;
    for (const unsigned long number : {8ul, 759ul, 908ul, 10035ul, 4'000'000'000ul})
        EXPECT_EQ(ErrorCatalogue::origin(number), QString()) << number;
}

TEST(ErrorCatalogue, KnowsWhereEveryNumberOfEveryTableComesFrom)
{
    for (unsigned long number = 0; number < largest; ++number)
        EXPECT_TRUE(tablesKnowing(number).empty() || !ErrorCatalogue::origin(number).isEmpty()) << number;
}

TEST(ErrorCatalogue, KnowsWhatIsNotTheSentenceOfAllOtherNumbers)
{
    const QString about = QStringLiteral("R");
    const auto isOther = [&](unsigned long number, const ErrorCatalogue::Table &table) {
        const auto bare = [&](unsigned long id) {
            return ErrorCatalogue::sentence(id, table, about).remove(QString::number(id));
        };
        return bare(number) == bare(4'000'000'000);
    };
    for (const ErrorCatalogue::NamedTable &named : ErrorCatalogue::tables())
        for (unsigned long number = 0; number < largest; ++number)
            EXPECT_EQ(ErrorCatalogue::isKnown(number, named.table), !isOther(number, named.table))
                << named.name << ' ' << number;
}
} // namespace
