#include "korvebase/errorflows.h"

#include <gtest/gtest.h>

namespace
{
constexpr korve::ErrorText rows[] = {{2, "two"}, {5, "five"}, {9, "nine"}};
constexpr korve::ErrorText disordered[] = {{2, "two"}, {9, "nine"}, {5, "five"}};
constexpr korve::ErrorText repeated[] = {{2, "two"}, {2, "two"}};

TEST(ErrorTexts, AreFoundByTheirNumber)
{
    for (const auto &row : rows)
        EXPECT_EQ(korve::findText(rows, row.id), row.text);
    for (const unsigned long absent : {0UL, 1UL, 3UL, 8UL, 10UL, 4294967298UL})
        EXPECT_EQ(korve::findText(rows, absent), nullptr);
    EXPECT_EQ(korve::findText({}, 2), nullptr);
}

TEST(ErrorTexts, ProveTheirOrder)
{
    EXPECT_TRUE(korve::isInOrder(rows));
    EXPECT_TRUE(korve::isInOrder({}));
    EXPECT_FALSE(korve::isInOrder(disordered));
    EXPECT_FALSE(korve::isInOrder(repeated));
}
} // namespace
