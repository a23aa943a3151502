#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/nodeobservingptr.h"
#include "valuetreelib/valueobservingptr.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

class Removal : public TreeTest
{
protected:
    LoggingObserver &observe(const QString &path, const char *name)
    {
        observers.push_back(std::make_unique<LoggingObserver>(name, log));
        TreeItem *item = tree.findValue(path);
        if (!item)
            item = tree.findNode(path);
        item->AddObserver(observers.back().get());
        return *observers.back();
    }

    std::vector<std::unique_ptr<LoggingObserver>> observers;
};

TEST_F(Removal, IsToldInTheOrderOfTheContract)
{
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    add<TextValue>(QStringLiteral("/p/n/m/"), QStringLiteral("w"));
    for (const auto &[path, name] :
         {std::pair{"/p", "p"}, {"/p/n", "n"}, {"/p/n/m", "m"}, {"/p/n/v", "v"}, {"/p/n/m/w", "w"}})
        observe(QLatin1String(path), name);
    EXPECT_TRUE(tree.removeNode(QStringLiteral("/p/n")));
    EXPECT_THAT(taken(), ElementsAre("p 16", "n 18", "m 18", "v 2", "v 18", "w 2", "w 18"));
}

TEST_F(Removal, UnhooksBeforeAnybodyIsTold)
{
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    observe(QStringLiteral("/p"), "p").react = [this] {
        EXPECT_EQ(tree.findNode(QStringLiteral("/p/n")), nullptr);
        EXPECT_EQ(tree.findValue(QStringLiteral("/p/n/v")), nullptr);
        EXPECT_THAT(tree.findNode(QStringLiteral("/p"))->GetTreeItems(), IsEmpty());
    };
    tree.removeNode(QStringLiteral("/p/n"));
    EXPECT_THAT(taken(), ElementsAre("p 16"));
}

TEST_F(Removal, OfAValueLeavesItsHoldersNullWhenObserversHear)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    LoggingObserver observer("v", log);
    ValueObservingPtr<TextValue> holder(&observer);
    ValuePtr<TextValue> plain;
    holder.GetFromTree(QStringLiteral("/p/v"));
    plain.GetFromTree(QStringLiteral("/p/v"));
    observer.react = [&] {
        EXPECT_FALSE(holder);
        EXPECT_FALSE(plain);
        EXPECT_EQ(observer.subject, value);
        EXPECT_EQ(value->GetState(), ValueStateDeleted);
        EXPECT_EQ(value->GetPathName(), QStringLiteral("/p/v"));
    };
    EXPECT_TRUE(tree.removeValue(QStringLiteral("/p/v")));
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 18"));
}

TEST_F(Removal, OfANodeLeavesItsHoldersNullWhenObserversHear)
{
    tree.addNode(QStringLiteral("/p/n"));
    LoggingObserver observer("n", log);
    NodeObservingPtr holder(observer);
    holder.GetFromTree(QStringLiteral("/p/n"));
    observer.react = [&] { EXPECT_EQ(holder.Get(), nullptr); };
    tree.removeNode(QStringLiteral("/p"));
    EXPECT_THAT(taken(), ElementsAre("n 18"));
}

TEST_F(Removal, OfANodeSparesTheValueOfItsPath)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("n"));
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    observe(QStringLiteral("/p/n"), "value n");
    tree.removeNode(QStringLiteral("/p/n"));
    EXPECT_EQ(tree.findValue(QStringLiteral("/p/n")), value);
    EXPECT_EQ(tree.findNode(QStringLiteral("/p/n")), nullptr);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Removal, OfAValueSparesTheNodeOfItsPath)
{
    add<TextValue>(QStringLiteral("/p/"), QStringLiteral("n"));
    TextValue *const below = add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    tree.removeValue(QStringLiteral("/p/n"));
    EXPECT_EQ(tree.findValue(QStringLiteral("/p/n/v")), below);
}

TEST_F(Removal, OfWhatIsNotThereIsFalse)
{
    tree.addNode(QStringLiteral("/p/n"));
    observe(QStringLiteral("/p"), "p");
    EXPECT_FALSE(tree.removeValue(QStringLiteral("/p/n")));
    EXPECT_FALSE(tree.removeNode(QStringLiteral("/p/m")));
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Removal, OfTheRootLeavesItAlone)
{
    LoggingObserver root("root", log);
    tree.findNode(QStringLiteral("/"))->AddObserver(&root);
    tree.addNode(QStringLiteral("/a"));
    add<TextValue>(QStringLiteral("/"), QStringLiteral("v"));
    taken();
    EXPECT_TRUE(tree.removeNode(QStringLiteral("/")));
    EXPECT_THAT(taken(), ElementsAre("root 16", "root 16"));
    EXPECT_EQ(tree.subtree(QStringLiteral("/")).size(), 1u);
    tree.findNode(QStringLiteral("/"))->DeleteObserver(&root);
}

TEST_F(Removal, SkipsTheOriginator)
{
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    LoggingObserver originator("o", log);
    tree.findNode(QStringLiteral("/p"))->AddObserver(&originator);
    tree.findNode(QStringLiteral("/p/n"))->AddObserver(&originator);
    tree.findValue(QStringLiteral("/p/n/v"))->AddObserver(&originator);
    tree.removeNode(QStringLiteral("/p/n"), &originator);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Removal, IsToldPastATransactionThatNobodyWillEnd)
{
    add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"))->StartTransaction(nullptr);
    observe(QStringLiteral("/p/v"), "v");
    tree.removeValue(QStringLiteral("/p/v"));
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 18"));
}

TEST_F(Removal, SurvivesAnObserverThatRemovesWhatIsAbove)
{
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    observe(QStringLiteral("/p"), "p").react = [this] { EXPECT_TRUE(tree.removeNode(QStringLiteral("/p"))); };
    observe(QStringLiteral("/p/n"), "n");
    tree.removeNode(QStringLiteral("/p/n"));
    EXPECT_THAT(taken(), ElementsAre("p 16", "p 18", "n 18"));
}

TEST_F(Removal, SurvivesAnObserverThatRemovesIt)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    observe(QStringLiteral("/p/v"), "v").react = [this] { tree.removeNode(QStringLiteral("/p")); };
    value->SetValue(QStringLiteral("x"), nullptr);
    EXPECT_THAT(taken(), ElementsAre("v 3", "v 2", "v 18"));
}

TEST_F(Removal, ReachesAllWhenObserversThrow)
{
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("v"));
    add<TextValue>(QStringLiteral("/p/n/"), QStringLiteral("w"));
    ValuePtr<TextValue> holder;
    holder.GetFromTree(QStringLiteral("/p/n/w"));
    for (const auto &[path, name] : {std::pair{"/p", "p"}, {"/p/n", "n"}, {"/p/n/v", "v"}, {"/p/n/w", "w"}})
        observe(QLatin1String(path), name).react = [name = name] { throw std::string(name); };
    try {
        tree.removeNode(QStringLiteral("/p/n"));
        FAIL();
    } catch (const std::string &first) {
        EXPECT_EQ(first, "p");
    }
    EXPECT_THAT(taken(), ElementsAre("p 16", "n 18", "v 2", "v 18", "w 2", "w 18"));
    EXPECT_FALSE(holder);
    EXPECT_FALSE(tree.findNode(QStringLiteral("/p/n")));
}

TEST_F(Removal, OfTheRootReachesAllWhenObserversThrow)
{
    for (const char *path : {"/p", "/q"}) {
        tree.addNode(QLatin1String(path));
        observe(QLatin1String(path), path).react = [] { throw std::string("trouble"); };
    }
    EXPECT_THROW(tree.removeNode(QStringLiteral("/")), std::string);
    EXPECT_THAT(taken(), ElementsAre("/p 18", "/q 18"));
    EXPECT_THAT(tree.findNode(QStringLiteral("/"))->GetTreeItems(), IsEmpty());
}

TEST_F(Removal, OfATreeThatEndsReachesAllWhenObserversThrow)
{
    auto ending = std::make_unique<Tree>();
    LoggingObserver observer("p", log);
    observer.react = [] { throw std::string("trouble"); };
    ending->addNode(QStringLiteral("/p"))->AddObserver(&observer);
    ending->addNode(QStringLiteral("/q"))->AddObserver(&observer);
    ending.reset();
    EXPECT_THAT(taken(), ElementsAre("p 18", "p 18"));
}

/// A holder that is in trouble whenever it hears of its item.
class TroubledHolder : public IObserver
{
public:
    explicit TroubledHolder(TreeItem &item) { item.addDeleteObserver(this); }
    void Update(Observable *, TChangeCode) override { throw std::string("trouble"); }
};

TEST_F(Removal, ReachesObserversWhenHoldersThrow)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    for (const auto &[path, name] : {std::pair{"/p", "p"}, {"/p/v", "v"}})
        observe(QLatin1String(path), name);
    TroubledHolder ofValue(*value);
    TroubledHolder ofNode(*tree.findNode(QStringLiteral("/p")));
    EXPECT_THROW(value->SetState(ValueStateDeleted, nullptr), std::string);
    EXPECT_THAT(taken(), ElementsAre("v 2"));
    EXPECT_THROW(tree.removeNode(QStringLiteral("/p")), std::string);
    EXPECT_THAT(taken(), ElementsAre("p 18", "v 2", "v 18"));
}

TEST_F(Removal, OneByOneKeepsTheOrderOfTheOthers)
{
    const int count = 1000;
    for (int i = 0; i < count; ++i)
        add<Value<int>>(QStringLiteral("/n"), QString::number(i));
    const auto names = [this] {
        std::vector<int> left;
        for (const TreeItem *item : tree.findNode(QStringLiteral("/n"))->GetTreeItems())
            left.push_back(item->name().toInt());
        return left;
    };
    std::vector<int> expected;
    for (int i = 0; i < count; ++i)
        if (i % 5 == 0)
            expected.push_back(i);
        else
            ASSERT_TRUE(tree.removeValue(QStringLiteral("/n/%1").arg(i)));
    EXPECT_EQ(names(), expected);
    add<Value<int>>(QStringLiteral("/n"), QString::number(count));
    expected.push_back(count);
    EXPECT_EQ(names(), expected);
    EXPECT_EQ(tree.subtree(QStringLiteral("/n")).size(), expected.size() + 1);
    for (; !expected.empty(); expected.pop_back()) // from the end, where the order is not that of the places
        ASSERT_TRUE(tree.removeValue(QStringLiteral("/n/%1").arg(expected.back())));
    EXPECT_TRUE(names().empty());
}

TEST_F(Removal, LetsANewValueTakeThePlaceAtOnce)
{
    TextValue *const old = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    TextValue *replacement = nullptr;
    observe(QStringLiteral("/p/v"), "v").react = [&] {
        replacement = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    };
    tree.removeValue(QStringLiteral("/p/v"));
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 18"));
    ASSERT_NE(replacement, nullptr);
    EXPECT_NE(replacement, old);
    EXPECT_EQ(tree.findValue(QStringLiteral("/p/v")), replacement);
}

TEST_F(Removal, ForgetsAnObserverThatIsDeletedWhileItsHolderIsNullAlready)
{
    struct Owner : LoggingObserver {
        Owner(const char *name, Log &log) : LoggingObserver(name, log) { holder.GetFromTree(QStringLiteral("/p/v")); }
        ValueObservingPtr<TextValue> holder{this};
    };
    add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    observe(QStringLiteral("/p/v"), "first");
    auto owner = std::make_unique<Owner>("owner", log);
    observers.front()->react = [&owner] { owner.reset(); };
    tree.removeValue(QStringLiteral("/p/v"));
    EXPECT_THAT(taken(), ElementsAre("first 2", "first 18"));
}

TEST_F(Removal, ReachesHoldersThatCameAfterItWasTold)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/p/"), QStringLiteral("v"));
    ValuePtr<TextValue> late;
    observe(QStringLiteral("/p/v"), "v").react = [&] { late.attach(value); };
    tree.removeValue(QStringLiteral("/p/v"));
    EXPECT_FALSE(late);
}

TEST_F(Removal, ComesWithTheEndOfATree)
{
    ValuePtr<TextValue> holder;
    LoggingObserver observer("v", log);
    {
        Tree other;
        auto value = std::make_unique<TextValue>();
        value->SetName(QStringLiteral("v"), nullptr);
        value->AddObserver(&observer);
        holder.attach(value.get());
        other.addValue(QStringLiteral("/a"), std::move(value));
    }
    EXPECT_FALSE(holder);
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 18"));
}

TEST_F(Removal, OfTheDeepestTreeNeedsNoStack)
{
    tree.addNode(QStringLiteral("/a").repeated(Tree::maxDepth));
    EXPECT_EQ(tree.subtree(QStringLiteral("/a")).size(), static_cast<std::size_t>(Tree::maxDepth));
    EXPECT_TRUE(tree.removeNode(QStringLiteral("/a")));
    EXPECT_EQ(tree.subtree(QStringLiteral("/")).size(), 1u);
}
} // namespace
