#include "coresupport/errorhandler.h"

#include <gtest/gtest.h>

namespace
{
class TraceMask : public testing::Test
{
protected:
    ~TraceMask() override { handler.setTraceMask(before); }
    ErrorHandler &handler = ErrorHandler::Instance();
    const unsigned before = handler.traceMask();
};

TEST_F(TraceMask, BeginsAsTheEnvironmentSays)
{
    EXPECT_EQ(before, ErrorHandler::maskFromText(qgetenv("KORVE_TRACE")));
}

TEST_F(TraceMask, ShowsNoDebuggingWhenItIs32)
{
    handler.setTraceMask(32);
    EXPECT_TRUE(handler.isTraced(TraceLevel::Normal));
    EXPECT_FALSE(handler.isTraced(TraceLevel::Debug));
}

TEST_F(TraceMask, IsTestedBitByBit)
{
    handler.setTraceMask(64);
    EXPECT_FALSE(handler.isTraced(TraceLevel::Normal));
    EXPECT_TRUE(handler.isTraced(TraceLevel::Debug));
    handler.setTraceMask(96);
    EXPECT_TRUE(handler.isTraced(TraceLevel::Normal));
}

struct MaskCase {
    const char *name;
    const char *text;
    unsigned mask;
};

class MaskText : public testing::TestWithParam<MaskCase>
{
};

TEST_P(MaskText, IsRead)
{
    EXPECT_EQ(ErrorHandler::maskFromText(GetParam().text), GetParam().mask);
}

INSTANTIATE_TEST_SUITE_P(Forms, MaskText,
                         testing::Values(MaskCase{"Absent", "", 32}, MaskCase{"Decimal", "96", 96},
                                         MaskCase{"Hexadecimal", " 0x60 ", 96}, MaskCase{"Nothing", "0", 0},
                                         MaskCase{"Word", "all", 32}, MaskCase{"Negative", "-1", 32},
                                         MaskCase{"TooLarge", "4294967296", 32}),
                         [](const auto &row) { return row.param.name; });
} // namespace
