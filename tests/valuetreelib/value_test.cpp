#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/valuenumeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

template <typename T> struct Sample;
template <> struct Sample<Value<QString>> {
    static inline const QString content = QStringLiteral("Köln"), text = content;
    static constexpr ValueType type = 1;
};
template <> struct Sample<Value<bool>> {
    static constexpr bool content = true;
    static inline const QString text = QStringLiteral("true");
    static constexpr ValueType type = 2;
};
template <> struct Sample<Value<int>> {
    static constexpr int content = std::numeric_limits<int>::min();
    static inline const QString text = QStringLiteral("-2147483648");
    static constexpr ValueType type = 3;
};
template <> struct Sample<Value<unsigned int>> {
    static constexpr unsigned content = std::numeric_limits<unsigned>::max();
    static inline const QString text = QStringLiteral("4294967295");
    static constexpr ValueType type = 4;
};
template <> struct Sample<Value<qint64>> {
    static constexpr qint64 content = std::numeric_limits<qint64>::min();
    static inline const QString text = QStringLiteral("-9223372036854775808");
    static constexpr ValueType type = 5;
};
template <> struct Sample<Value<double>> {
    static constexpr double content = 0.1;
    static inline const QString text = QStringLiteral("0.1");
    static constexpr ValueType type = 6;
};
template <> struct Sample<ValueNumeric<int>> : Sample<Value<int>> { static constexpr ValueType type = 10; };
template <> struct Sample<ValueNumeric<qint64>> : Sample<Value<qint64>> { static constexpr ValueType type = 11; };
template <> struct Sample<ValueNumeric<double>> : Sample<Value<double>> { static constexpr ValueType type = 12; };

template <typename Class> class EveryClass : public TreeTest
{
protected:
    EveryClass() { value.AddObserver(&observer); }
    LoggingObserver observer{"v", log};
    Class value;
};

using Classes = testing::Types<Value<QString>, Value<bool>, Value<int>, Value<unsigned int>, Value<qint64>, Value<double>,
                               ValueNumeric<int>, ValueNumeric<qint64>, ValueNumeric<double>>;
TYPED_TEST_SUITE(EveryClass, Classes);

TYPED_TEST(EveryClass, BeginsValidAndEmpty)
{
    EXPECT_EQ(this->value.GetState(), ValueStateValid);
    EXPECT_EQ(this->value.GetValue(), decltype(this->value.GetValue()){});
    EXPECT_FALSE(this->value.IsTransactionActive());
    EXPECT_TRUE(this->value.isOptimized());
}

TYPED_TEST(EveryClass, TellsAChangeOnce)
{
    this->value.SetValue(Sample<TypeParam>::content, nullptr);
    EXPECT_EQ(this->value.GetValue(), Sample<TypeParam>::content);
    EXPECT_THAT(this->taken(), ElementsAre("v 3"));
    this->value.SetValue(Sample<TypeParam>::content, nullptr);
    this->value.SetStringValue(Sample<TypeParam>::text, nullptr);
    EXPECT_THAT(this->taken(), IsEmpty()) << "equal";
}

TYPED_TEST(EveryClass, IsReadAndWrittenAsText)
{
    this->value.SetStringValue(Sample<TypeParam>::text, nullptr);
    EXPECT_EQ(this->value.GetValue(), Sample<TypeParam>::content);
    EXPECT_EQ(this->value.GetStringValue(), Sample<TypeParam>::text);
    EXPECT_THAT(this->taken(), ElementsAre("v 3"));
}

TYPED_TEST(EveryClass, TakesOverAnotherSilently)
{
    TypeParam other;
    other.SetValue(Sample<TypeParam>::content, nullptr);
    other.SetState(ValueStateSeeded, nullptr);
    EXPECT_FALSE(this->value.Compare(&other));
    this->value.Assign(other);
    EXPECT_EQ(this->value.GetValue(), Sample<TypeParam>::content);
    EXPECT_EQ(this->value.GetState(), ValueStateSeeded);
    EXPECT_TRUE(this->value.Compare(&other));
    EXPECT_THAT(this->taken(), IsEmpty());
}

TYPED_TEST(EveryClass, ComparesOnlyWithItsOwnClass)
{
    EXPECT_FALSE(this->value.Compare(nullptr));
    const TextValue text;
    const Value<bool> flag;
    const ValueBase &foreign = std::is_same_v<TypeParam, TextValue> ? static_cast<const ValueBase &>(flag) : text;
    EXPECT_FALSE(this->value.Compare(&foreign));
    EXPECT_THROW(this->value.Assign(foreign), std::bad_cast);
}

TYPED_TEST(EveryClass, HasItsTypeNumber)
{
    EXPECT_EQ(this->value.GetType(), Sample<TypeParam>::type);
}

class ValueTest : public TreeTest
{
protected:
    ValueTest() { value.AddObserver(&observer); }
    LoggingObserver observer{"v", log};
    Value<int> value;
};

TEST_F(ValueTest, DoesNotCallBackTheOriginator)
{
    LoggingObserver other("other", log);
    value.AddObserver(&other);
    value.SetValue(1, &observer);
    value.SetState(ValueStateSeeded, &observer);
    value.HasChanged(ChangeCodeValue, &observer);
    EXPECT_THAT(taken(), ElementsAre("other 3", "other 2", "other 3"));
}

TEST_F(ValueTest, TellsItsState)
{
    value.SetState(ValueStateSeeded, nullptr);
    EXPECT_EQ(value.GetState(), 2);
    EXPECT_THAT(taken(), ElementsAre("v 2"));
    value.SetState(ValueStateSeeded, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    value.SetState(ValueStateConnectionLost, nullptr);
    EXPECT_EQ(value.GetState(), 3);
    EXPECT_THAT(taken(), ElementsAre("v 2"));
}

TEST_F(ValueTest, TakesStatesUpToTheGreatestAndRefusesOthersWithATrace)
{
    for (const int state : {0, 1, 4, 15}) {
        value.SetState(static_cast<TValueState>(state), nullptr);
        EXPECT_EQ(value.GetState(), state);
    }
    EXPECT_THAT(traces, IsEmpty());
    taken();
    for (const int state : {-1, 16, 17, 256 + 2})
        value.SetState(static_cast<TValueState>(state), nullptr);
    EXPECT_EQ(value.GetState(), 15);
    EXPECT_THAT(taken(), IsEmpty());
    ASSERT_EQ(traces.size(), 4u);
    EXPECT_EQ(traces[1], QStringLiteral(" (Int) does not take \"the state 16\""));
}

TEST_F(ValueTest, CanBeToldAlthoughNothingChanged)
{
    value.HasChanged(ChangeCodeValue, nullptr);
    value.NotifyObservers(ChangeCodeValue, nullptr);
    value.NotifyObservers(ChangeCodeDeleted, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3", "v 3", "v 18"));
}

TEST_F(ValueTest, RefusesTextThatIsNoContent)
{
    value.SetValue(5, nullptr);
    taken();
    for (const char *text : {"", "x", "1.5", "2147483648", "-2147483649"})
        value.SetStringValue(QLatin1String(text), nullptr);
    EXPECT_EQ(value.GetValue(), 5);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(traces.size(), 5u);
    EXPECT_EQ(traces[1], QStringLiteral(" (Int) does not take \"x\""));
}

TEST_F(ValueTest, ReadsTextOfFlagsInAnyCase)
{
    Value<bool> flag;
    flag.SetStringValue(QStringLiteral(" TRUE "), nullptr);
    EXPECT_TRUE(flag.GetValue());
    flag.SetStringValue(QStringLiteral("maybe"), nullptr);
    EXPECT_TRUE(flag.GetValue());
    flag.SetStringValue(QStringLiteral("0"), nullptr);
    EXPECT_FALSE(flag.GetValue());
}

TEST_F(ValueTest, KeepsEveryDigitOfADoubleInItsText)
{
    Value<double> a, b;
    a.SetValue(1.0 / 3.0, nullptr);
    b.SetStringValue(a.GetStringValue(), nullptr);
    EXPECT_EQ(a.GetValue(), b.GetValue());
}

TEST_F(ValueTest, TellsNotANumberOnce)
{
    Value<double> number;
    number.AddObserver(&observer);
    number.SetValue(std::nan(""), nullptr);
    number.SetValue(std::nan(""), nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}

TEST_F(ValueTest, IsAnObservableAnItemAndAValue)
{
    Observable *const subject = &value;
    EXPECT_EQ(dynamic_cast<Value<int> *>(subject), &value);
    EXPECT_EQ(dynamic_cast<ValueBase *>(subject), &value);
    EXPECT_EQ(dynamic_cast<Node *>(subject), nullptr);
    IValue &asInterface = value;
    asInterface.SetStringValue(QStringLiteral("7"), nullptr);
    EXPECT_EQ(value.GetValue(), 7);
}

TEST_F(ValueTest, RemembersThatItsChangesMustNotBeMerged)
{
    value.setOptimized(false);
    EXPECT_FALSE(value.isOptimized());
    value.setOptimized(true);
    EXPECT_TRUE(value.isOptimized());
}

TEST_F(ValueTest, SurvivesObserversThatEditTheList)
{
    LoggingObserver second("second", log);
    value.AddObserver(&second);
    observer.react = [this] { value.DeleteObservers(); };
    value.SetValue(1, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}

TEST_F(ValueTest, TellsAChangeMadeByAnObserverWithinTheFirstRound)
{
    LoggingObserver second("second", log);
    value.AddObserver(&second);
    observer.react = [this] { value.SetValue(2, nullptr); };
    value.SetValue(1, nullptr);
    EXPECT_EQ(value.GetValue(), 2);
    EXPECT_THAT(taken(), ElementsAre("v 3", "v 3", "second 3", "second 3"));
}
} // namespace
