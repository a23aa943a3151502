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
