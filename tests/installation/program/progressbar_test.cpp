#include "installation/program/progressbar.h"

#include <gmock/gmock.h>

using installation::ProgressBar;

namespace
{

struct BarCase {
    const char *name;
    quint64 done;
    quint64 total;
    int width;
    const char *line;
};

class ProgressLine : public testing::TestWithParam<BarCase>
{
};

std::string caseName(const testing::TestParamInfo<BarCase> &info)
{
    return info.param.name;
}

} // namespace

TEST_P(ProgressLine, IsDrawn)
{
    const BarCase &row = GetParam();
    EXPECT_EQ(ProgressBar::drawn(QStringLiteral("a"), row.done, row.total, row.width), QLatin1String(row.line));
}

INSTANTIATE_TEST_SUITE_P(Lines, ProgressLine,
                         testing::Values(BarCase{"Unknown", 0, 0, 20, "a [..........]   0 %"},
                                         BarCase{"Half", 1, 2, 20, "a [#####.....]  50 %"},
                                         BarCase{"All", 9, 9, 20, "a [##########] 100 %"},
                                         BarCase{"TooMuch", 9, 3, 20, "a [##########] 100 %"},
                                         BarCase{"Narrow", 1, 2, 3, "a []  50 %"}),
                         caseName);
