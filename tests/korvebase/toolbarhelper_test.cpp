#include "korvebase/toolbarhelper.h"

#include "tests/korvebase/errortexttable.h"

#include <gmock/gmock.h>

#include <limits>
#include <type_traits>

using KorveCommon::ToolbarHelper;
using Context = ToolbarHelper::errorIdContext;

namespace
{
constexpr unsigned lastNumber = 21000; // beyond all numbers of the tables

std::string worded(unsigned errorId, int context)
{
    return ToolbarHelper::Instance().ErrorId2Text(errorId, static_cast<Context>(context)).toStdString();
}

std::string number(unsigned errorId)
{
    return std::to_string(errorId);
}

/// Both contexts word a listed number alike, and each has a way of its own with others.
void expectTheTable(const QString &file, int context, int numbers, const char *before, const char *behind)
{
    const ErrorTextTable table(file);
    ASSERT_EQ(table.size(), numbers);
    for (unsigned errorId = 0; errorId <= lastNumber; ++errorId) {
        const std::string sentence = table.text(errorId).toStdString();
        if (table.lists(errorId))
            ASSERT_EQ(worded(errorId, context), "(" + number(errorId) + ") " + sentence);
        else
            ASSERT_EQ(worded(errorId, context), "Error ID " + (before + number(errorId) + behind) + " not found");
    }
}

TEST(ToolbarText, OfTheFirstContextIsThatOfTheTableForEveryNumber)
{
    expectTheTable(QStringLiteral("toolbar0"), 0, 21, "", "");
}

TEST(ToolbarText, OfTheSecondContextIsThatOfTheTableForEveryNumber)
{
    expectTheTable(QStringLiteral("toolbar1"), 1, 52, "(", ") ");
}

TEST(ToolbarText, BeginsWithTheNumber)
{
    EXPECT_EQ(worded(100, 0).substr(0, 6), "(100) ");
    EXPECT_EQ(worded(7000, 1), "(7000) An unknown error has occurred.");
}

TEST(ToolbarText, DependsOnTheContext)
{
    EXPECT_EQ(worded(204, 0), "(204) Could not retrieve the record data from the korve server. Incompatible interface "
                              "between client and server.");
    EXPECT_EQ(worded(204, 1), "(204) Could not delete the history entry, as the korve is not reachable.");
}

TEST(ToolbarText, OfAnUnknownNumberSaysSo)
{
    EXPECT_EQ(worded(99, 0), "Error ID 99 not found");
    EXPECT_EQ(worded(7000, 0), "Error ID 7000 not found");
    EXPECT_EQ(worded(8, 1), "Error ID (8)  not found");
    EXPECT_EQ(worded(7001, 1), "Error ID (7001)  not found");
    EXPECT_EQ(worded(0, 1), "Error ID (0)  not found");
}

TEST(ToolbarText, OfAnUnknownContextIsNeverFound)
{
    for (const int context : {2, 3, -1, 1000000})
        for (const unsigned errorId : {0u, 1u, 100u, 101u, 7000u})
            EXPECT_EQ(worded(errorId, context), "Error ID " + number(errorId) + " not found") << context;
}

TEST(ToolbarText, OfTheGreatestNumberHasNoSign)
{
    constexpr unsigned greatest = std::numeric_limits<unsigned>::max();
    EXPECT_EQ(worded(greatest, 0), "Error ID 4294967295 not found");
    EXPECT_EQ(worded(greatest, 1), "Error ID (4294967295)  not found");
}

TEST(ToolbarHelp, IsOneObjectThatCanBeDerivedFrom)
{
    EXPECT_EQ(&ToolbarHelper::Instance(), &ToolbarHelper::Instance());
    EXPECT_TRUE(std::has_virtual_destructor_v<ToolbarHelper>);
}
} // namespace
