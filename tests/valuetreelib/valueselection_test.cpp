#include "valuetreelib/valueselection.h"

#include "tests/valuetreelib/treetestsupport.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

class Selection : public TreeTest
{
protected:
    Selection()
    {
        value.setTexts({QStringLiteral("connecting"), QStringLiteral("connected"), QStringLiteral("disconnected")}, nullptr);
        value.AddObserver(&observer);
    }
    LoggingObserver observer{"v", log};
    ValueSelection value;
};

TEST_F(Selection, BeginsEmptyWithoutKey)
{
    const ValueSelection fresh;
    EXPECT_EQ(fresh.GetCurrentKey(), -1);
    EXPECT_EQ(fresh.GetStringValue(), QString());
    EXPECT_THAT(fresh.items(), IsEmpty());
}

TEST_F(Selection, NumbersTextsFromZero)
{
    EXPECT_THAT(value.items(), ElementsAre(SelItemDesc(QStringLiteral("connecting"), 0.0, 0),
                                           SelItemDesc(QStringLiteral("connected"), 1.0, 1),
                                           SelItemDesc(QStringLiteral("disconnected"), 2.0, 2)));
    EXPECT_EQ(value.GetCurrentKey(), -1) << "nothing is selected by itself";
}

TEST_F(Selection, IsMadeByKeyPositionOrText)
{
    value.selectKey(1, nullptr);
    EXPECT_EQ(value.GetStringValue(), QStringLiteral("connected"));
    value.SelectIndex(2, nullptr);
    EXPECT_EQ(value.GetCurrentKey(), 2);
    value.SetStringValue(QStringLiteral("connecting"), nullptr);
    EXPECT_EQ(value.GetCurrentKey(), 0);
    EXPECT_THAT(taken(), ElementsAre("v 3", "v 3", "v 3"));
}

TEST_F(Selection, TellsKeysApartFromPositions)
{
    ValueSelection mode;
    mode.addItem(QStringLiteral("OFF"), 0.5, 10, nullptr);
    mode.addItem(QStringLiteral("ON"), 1.5, 20, nullptr);
    mode.SelectIndex(1, nullptr);
    EXPECT_EQ(mode.GetCurrentKey(), 20);
    EXPECT_EQ(mode.items()[1].number(), 1.5);
}

TEST_F(Selection, OfTheCurrentItemIsSilent)
{
    value.selectKey(1, nullptr);
    taken();
    value.selectKey(1, nullptr);
    value.SelectIndex(1, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    value.NotifyObservers(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3")) << "unless it is forced";
}

TEST_F(Selection, OfWhatIsNotThereIsRefusedWithATrace)
{
    value.selectKey(1, nullptr);
    taken();
    value.selectKey(3, nullptr);
    value.SelectIndex(-1, nullptr);
    value.SelectIndex(3, nullptr);
    value.SetStringValue(QStringLiteral("gone"), nullptr);
    EXPECT_EQ(value.GetCurrentKey(), 1);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_THAT(traces, ElementsAre(QStringLiteral(" (Selection) does not take \"3\""),
                                    QStringLiteral(" (Selection) does not take \"position -1\""),
                                    QStringLiteral(" (Selection) does not take \"position 3\""),
                                    QStringLiteral(" (Selection) does not take \"gone\"")));
}

TEST_F(Selection, StaysWhenItsKeyStays)
{
    value.selectKey(1, nullptr);
    taken();
    value.setTexts({QStringLiteral("a"), QStringLiteral("b")}, nullptr);
    EXPECT_EQ(value.GetStringValue(), QStringLiteral("b"));
    EXPECT_THAT(taken(), ElementsAre("v 5"));
}

TEST_F(Selection, IsLostWithItsItem)
{
    value.selectKey(2, nullptr);
    taken();
    value.clearItems(nullptr);
    EXPECT_EQ(value.GetCurrentKey(), -1);
    EXPECT_THAT(taken(), ElementsAre("v 5", "v 3"));
    value.clearItems(nullptr);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Selection, TakesAnItemOfAKnownKeyInPlace)
{
    value.addItem(QStringLiteral("linked"), 9.0, 1, nullptr);
    EXPECT_EQ(value.items().size(), 3u);
    EXPECT_EQ(value.items()[1], SelItemDesc(QStringLiteral("linked"), 9.0, 1));
    value.addItem(QStringLiteral("linked"), 9.0, 1, nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 5"));
}

TEST_F(Selection, SkipsTheOriginator)
{
    value.selectKey(2, &observer);
    value.clearItems(&observer);
    value.setTexts({QStringLiteral("a")}, &observer);
    value.addItem(QStringLiteral("b"), 1.0, 1, &observer);
    value.SelectIndex(0, &observer);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Selection, ComparesAndTakesOverListKeyAndState)
{
    ValueSelection other;
    EXPECT_FALSE(other.Compare(&value));
    other.Assign(value);
    EXPECT_TRUE(other.Compare(&value));
    other.selectKey(1, nullptr);
    EXPECT_FALSE(other.Compare(&value));
    const TextValue text;
    EXPECT_FALSE(other.Compare(&text));
    EXPECT_THROW(other.Assign(text), std::bad_cast);
}

TEST_F(Selection, TellsThatItIsLostAlsoWhenAnObserverOfTheListThrows)
{
    value.selectKey(1, nullptr);
    taken();
    observer.react = [] { throw std::string("trouble"); };
    EXPECT_THROW(value.clearItems(nullptr), std::string);
    EXPECT_THAT(taken(), ElementsAre("v 5", "v 3"));
    EXPECT_EQ(value.GetCurrentKey(), ValueSelection::noKey);
}

TEST_F(Selection, SurvivesAnObserverThatRemovesItWhenTheListChanges)
{
    auto *const inTree = add<ValueSelection>(QStringLiteral("/a"), QStringLiteral("s"));
    inTree->setTexts({QStringLiteral("x")}, nullptr);
    inTree->selectKey(0, nullptr);
    inTree->AddObserver(&observer);
    observer.react = [this] { tree.removeValue(QStringLiteral("/a/s")); };
    inTree->clearItems(nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 5", "v 2", "v 18"));
}
} // namespace
