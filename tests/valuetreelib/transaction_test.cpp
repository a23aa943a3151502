#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueptr.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

class Transaction : public TreeTest
{
protected:
    Transaction() { value.AddObserver(&observer); }
    LoggingObserver observer{"v", log};
    ValueNumeric<int> value;
};

TEST_F(Transaction, TellsAllChangesOnceWithItsCode)
{
    value.StartTransaction(nullptr);
    EXPECT_TRUE(value.IsTransactionActive());
    value.SetValue(1, nullptr);
    value.SetValue(2, nullptr);
    value.SetMinMax(0, 5, 1, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(value.GetValue(), 2) << "only the telling waits";
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_FALSE(value.IsTransactionActive());
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}

TEST_F(Transaction, CountsOnlyAtItsOutermostEnd)
{
    value.StartTransaction(nullptr);
    value.StartTransaction(nullptr);
    value.SetValue(1, nullptr);
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_TRUE(value.IsTransactionActive());
    EXPECT_THAT(taken(), IsEmpty());
    value.EndTransaction(ChangeCodeState, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 2"));
}

TEST_F(Transaction, IsSilentWhenNothingChanged)
{
    value.StartTransaction(nullptr);
    value.SetValue(0, nullptr);
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Transaction, TellsWhatWasToldExpressly)
{
    value.StartTransaction(nullptr);
    value.HasChanged(ChangeCodeValue, nullptr);
    value.HasChanged(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}

TEST_F(Transaction, TellsAChangedStateBeforeItsCode)
{
    value.StartTransaction(nullptr);
    value.SetValue(1, nullptr);
    value.SetState(ValueStateSeeded, nullptr);
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 3"));
}

TEST_F(Transaction, SkipsTheOriginatorOfItsEnd)
{
    LoggingObserver other("other", log);
    value.AddObserver(&other);
    value.StartTransaction(&observer);
    value.SetValue(1, nullptr);
    value.EndTransaction(ChangeCodeValue, &observer);
    EXPECT_THAT(taken(), ElementsAre("other 3"));
}

TEST_F(Transaction, DoesNotHoldBackThatTheValueGoes)
{
    value.StartTransaction(nullptr);
    value.NotifyObservers(ChangeCodeDeleted, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 18"));
}

TEST_F(Transaction, DoesNotHoldBackHoldersOfADeletedValue)
{
    ValuePtr<ValueNumeric<int>> holder;
    holder.attach(&value);
    value.StartTransaction(nullptr);
    value.SetState(ValueStateDeleted, nullptr);
    EXPECT_FALSE(holder);
    value.EndTransaction(ChangeCodeState, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 2"));
}

TEST_F(Transaction, TellsAllOfItsEndWhenAnObserverThrows)
{
    LoggingObserver second("second", log);
    value.AddObserver(&second);
    observer.react = [] { throw std::string("trouble"); };
    value.StartTransaction(nullptr);
    value.SetState(ValueStateSeeded, nullptr);
    value.SetValue(1, nullptr);
    EXPECT_THROW(value.EndTransaction(ChangeCodeValue, nullptr), std::string);
    EXPECT_THAT(taken(), ElementsAre("v 2", "second 2", "v 3", "second 3"));
    EXPECT_FALSE(value.IsTransactionActive());
    value.SetValue(2, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3", "second 3"));
}

TEST_F(Transaction, ThatWasNotStartedIsTracedOnly)
{
    value.EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_THAT(traces, ElementsAre(QStringLiteral(": no transaction to end")));
    value.SetValue(1, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}

TEST_F(Transaction, SurvivesAnObserverThatRemovesTheValueAtItsEnd)
{
    auto *const inTree = add<Value<int>>(QStringLiteral("/a"), QStringLiteral("v"));
    inTree->AddObserver(&observer);
    observer.react = [this] { tree.removeValue(QStringLiteral("/a/v")); };
    inTree->StartTransaction(nullptr);
    inTree->SetValue(1, nullptr);
    inTree->SetState(ValueStateSeeded, nullptr);
    inTree->EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 2", "v 18"));
}
} // namespace
