#include "valuetreelib/valuenumeric.h"

#include "tests/valuetreelib/treetestsupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

class Limits : public TreeTest
{
protected:
    Limits() { value.AddObserver(&observer); }
    LoggingObserver observer{"v", log};
    ValueNumeric<double> value;
};

TEST_F(Limits, AreNoneAtFirst)
{
    EXPECT_EQ(value.min(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(value.max(), std::numeric_limits<double>::max());
    EXPECT_EQ(value.step(), 0.0);
    EXPECT_EQ(ValueNumeric<qint64>().min(), std::numeric_limits<qint64>::min());
    EXPECT_EQ(ValueNumeric<int>().max(), std::numeric_limits<int>::max());
}

TEST_F(Limits, ChangeNeitherTheContentNorWhatItMayBecome)
{
    value.SetValue(10.0, nullptr);
    taken();
    value.SetMinMax(0.0, 5.0, 1.0, nullptr);
    EXPECT_EQ(value.GetValue(), 10.0);
    EXPECT_THAT(taken(), ElementsAre("v 4"));
    value.SetValue(20.0, nullptr);
    EXPECT_EQ(value.GetValue(), 20.0);
}

TEST_F(Limits, AreSetTogetherOrOneByOne)
{
    value.SetMinMax(-9223372036854775808.0, 9223372036854775808.0, 1.0, nullptr);
    EXPECT_EQ(value.min(), -std::pow(2.0, 63));
    EXPECT_EQ(value.max(), std::pow(2.0, 63));
    value.SetMin(0.0, nullptr);
    value.SetMax(18446744073709551616.0, nullptr);
    value.SetStep(2.0, nullptr);
    EXPECT_EQ(value.min(), 0.0);
    EXPECT_EQ(value.max(), std::pow(2.0, 64));
    EXPECT_EQ(value.step(), 2.0);
    EXPECT_THAT(taken(), ElementsAre("v 4", "v 4", "v 4", "v 4"));
    value.SetMin(0.0, nullptr);
    EXPECT_THAT(taken(), IsEmpty()) << "equal";
}

TEST_F(Limits, ThatCrossAreRefused)
{
    value.SetMinMax(2.0, 1.0, 1.0, nullptr);
    value.SetMin(std::nan(""), nullptr);
    value.SetStep(std::nan(""), nullptr);
    EXPECT_EQ(value.max(), std::numeric_limits<double>::max());
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(traces.size(), 3u);
}

TEST_F(Limits, BelongToTheComparison)
{
    ValueNumeric<double> other;
    other.SetMin(1.0, nullptr);
    EXPECT_FALSE(value.Compare(&other));
    value.Assign(other);
    EXPECT_EQ(value.min(), 1.0);
    EXPECT_TRUE(value.Compare(&other));
}

TEST_F(Limits, AreSeenThroughTheNumericInterface)
{
    ValueNumeric<int> number;
    number.SetMinMax(0, 65535, 1, nullptr);
    IValueNumeric &view = number;
    view.setNumericValue(12.9, nullptr);
    EXPECT_EQ(number.GetValue(), 12);
    EXPECT_EQ(view.numericMax(), 65535.0);
    EXPECT_EQ(view.numericMin(), 0.0);
    EXPECT_EQ(view.numericStep(), 1.0);
    EXPECT_EQ(view.numericValue(), 12.0);
}

TEST_F(Limits, OfTheStoredTypeHoldForForeignNumbers)
{
    ValueNumeric<int> number;
    for (const double refused : {2147483648.0, -2147483649.0, std::nan(""), HUGE_VAL})
        number.setNumericValue(refused, nullptr);
    EXPECT_EQ(number.GetValue(), 0);
    EXPECT_EQ(traces.size(), 4u);
    ValueNumeric<qint64> big;
    big.setNumericValue(9223372036854775808.0, nullptr);
    EXPECT_EQ(big.GetValue(), 0);
    big.setNumericValue(-9223372036854775808.0, nullptr);
    EXPECT_EQ(big.GetValue(), std::numeric_limits<qint64>::min());
}
} // namespace
