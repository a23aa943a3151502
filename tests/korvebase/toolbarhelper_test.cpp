#include "korvebase/toolbarhelper.h"

#include <gtest/gtest.h>

using KorveCommon::ToolbarHelper;

namespace
{

QString textOf(unsigned int id, int context)
{
    return ToolbarHelper::Instance().ErrorId2Text(id, static_cast<ToolbarHelper::errorIdContext>(context));
}

TEST(ToolbarMessages, BeginWithTheirNumber)
{
    EXPECT_EQ(textOf(160, 0), "(160) Cannot copy as server is not reachable.");
    EXPECT_EQ(textOf(7000, 1), "(7000) An unknown error has occurred.");
}

TEST(ToolbarMessages, DependOnTheNumbering)
{
    EXPECT_EQ(textOf(204, 1), "(204) Could not delete the history entry, as the korve is not reachable.");
    EXPECT_EQ(textOf(204, 0), "(204) Could not retrieve the record data from the korve server. Incompatible interface "
                              "between client and server.");
}

TEST(ToolbarMessages, SayWhichNumberIsUnknown)
{
    for (const unsigned int id : {0U, 1U, 99U, 102U, 258U, 7000U, 4294967295U})
        EXPECT_EQ(textOf(id, 0), QStringLiteral("Error ID %1 not found").arg(id));
    for (const unsigned int id : {0U, 8U, 29U, 100U, 232U, 6999U, 7001U, 4294967295U})
        EXPECT_EQ(textOf(id, 1), QStringLiteral("Error ID (%1)  not found").arg(id));
    for (const int context : {-1, 2, 1000000})
        EXPECT_EQ(textOf(100, context), "Error ID 100 not found");
}

} // namespace
