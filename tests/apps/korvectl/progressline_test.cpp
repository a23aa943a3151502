#include "apps/korvectl/progressline.h"

#include <gmock/gmock.h>

using korvectl::ProgressLine;

TEST(ProgressLine, FillsUp)
{
    const QString title = QStringLiteral("a");
    EXPECT_EQ(ProgressLine::drawn(title, 0, 1000, 28), QLatin1String("a [........]   0 % of 1.0 kB"));
    EXPECT_EQ(ProgressLine::drawn(title, 500, 1000, 28), QLatin1String("a [####....]  50 % of 1.0 kB"));
    EXPECT_EQ(ProgressLine::drawn(title, 1000, 1000, 28), QLatin1String("a [########] 100 % of 1.0 kB"));
    EXPECT_EQ(ProgressLine::drawn(title, 0, 0, 28).left(12), QLatin1String("a [#########"));
    EXPECT_EQ(ProgressLine::drawn(title, 2000, 1000, 5), QLatin1String("a [] 100 % of 1.0 kB"));
}

TEST(ProgressLine, IsNoWiderThanTheTerminal)
{
    const QString title = QStringLiteral("R20261121-155553-46401906.sigmf-data");
    EXPECT_EQ(ProgressLine::drawn(title, 500, 1000, 40), QStringLiteral("\u2026-46401906.sigmf-data []  50 % of 1.0 kB"));
    for (int width = 22; width < 100; ++width)
        EXPECT_LE(ProgressLine::drawn(title, 500, 1000, width).size(), width);
}

TEST(ProgressLine, LetsNoTitleMoveTheCursor)
{
    EXPECT_TRUE(ProgressLine::drawn(QStringLiteral("\x1b[2Ja"), 0, 1, 80).startsWith(QLatin1String("?[2Ja [")));
}
