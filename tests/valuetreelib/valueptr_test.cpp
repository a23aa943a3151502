#include "valuetreelib/valueptr.h"

#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/itreelistener.h"
#include "valuetreelib/nodeobservingptr.h"
#include "valuetreelib/valueobservingptr.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts what is released.
class ReleaseListener : public ITreeListener
{
public:
    explicit ReleaseListener(Tree &tree) : tree(tree) { tree.addListener(QStringLiteral("/"), this); }
    ~ReleaseListener() override { tree.removeListener(this); }
    void itemAdded(TreeItem &, IObserver *) override {}
    void itemRemoved(TreeItem &, IObserver *) override {}
    void valueChanged(const ValueChange &) override {}
    void commandRecorded(ValueBase &, const ValueBase::CommandOnValue &) override {}
    void valueReleased(ValueBase &value) override { released.push_back(value.GetPathName()); }

    Tree &tree;
    std::vector<QString> released;
};

class ValuePointer : public TreeTest
{
protected:
    TextValue *value = add<TextValue>(QStringLiteral("/a/"), QStringLiteral("v"));
    ValuePtr<TextValue> holder;
};

TEST_F(ValuePointer, FindsItsValue)
{
    EXPECT_TRUE(holder.GetFromTree(QStringLiteral("a//v")));
    EXPECT_EQ(holder.Get(), value);
    EXPECT_TRUE(holder);
    EXPECT_EQ(holder->GetPathName(), QStringLiteral("/a/v"));
}

TEST_F(ValuePointer, CountsAValueOfAnotherClassAsAbsent)
{
    ValuePtr<Value<bool>> flag;
    EXPECT_FALSE(flag.GetFromTree(QStringLiteral("/a/v")));
    EXPECT_FALSE(flag);
    EXPECT_FALSE(flag.getOrCreate(QStringLiteral("/a/v")));
    EXPECT_FALSE(flag) << "and does not replace it";
    EXPECT_EQ(tree.findValue(QStringLiteral("/a/v")), value);
}

TEST_F(ValuePointer, LetsGoFirstAlsoWhenItThenFindsNothing)
{
    ReleaseListener listener(tree);
    holder.GetFromTree(QStringLiteral("/a/v"));
    EXPECT_FALSE(holder.GetFromTree(QStringLiteral("/a/other")));
    EXPECT_FALSE(holder);
    EXPECT_THAT(listener.released, ElementsAre(QStringLiteral("/a/v")));
    EXPECT_EQ(tree.findNode(QStringLiteral("/a"))->GetTreeItems().size(), 1u) << "nothing was created";
}

TEST_F(ValuePointer, CreatesOnce)
{
    EXPECT_FALSE(holder.getOrCreate(QStringLiteral("/a/v")));
    EXPECT_EQ(holder.Get(), value);
    EXPECT_TRUE(holder.getOrCreate(QStringLiteral("/new/b//c/leaf")));
    EXPECT_EQ(holder->GetPathName(), QStringLiteral("/new/b/c/leaf"));
    EXPECT_EQ(holder->GetState(), ValueStateValid);
    ValuePtr<TextValue> second;
    EXPECT_FALSE(second.getOrCreate(QStringLiteral("/new/b/c/leaf")));
    EXPECT_EQ(second.Get(), holder.Get());
    EXPECT_TRUE(second.getOrCreate(QStringLiteral("p/SubSystems/a")));
    EXPECT_EQ(second->GetPathName(), QStringLiteral("/p/SubSystems/a"));
}

TEST_F(ValuePointer, IsNullWhenAnObserverRemovesTheNewValueAtOnce)
{
    LoggingObserver observer("a", log);
    tree.findNode(QStringLiteral("/a"))->AddObserver(&observer);
    observer.react = [this] { tree.removeValue(QStringLiteral("/a/w")); };
    EXPECT_FALSE(holder.getOrCreate(QStringLiteral("/a/w"))) << "nobody can seed it";
    EXPECT_FALSE(holder);
}

TEST_F(ValuePointer, ReleasesWhatItHeldOnce)
{
    ReleaseListener listener(tree);
    holder.GetFromTree(QStringLiteral("/a/v"));
    holder.Reset();
    holder.Reset();
    EXPECT_FALSE(holder);
    EXPECT_THAT(listener.released, ElementsAre(QStringLiteral("/a/v")));
    EXPECT_EQ(tree.findValue(QStringLiteral("/a/v")), value) << "values live without holders";
}

TEST_F(ValuePointer, ReleasesWhenItEnds)
{
    ReleaseListener listener(tree);
    {
        ValuePtr<TextValue> brief;
        brief.GetFromTree(QStringLiteral("/a/v"));
    }
    EXPECT_EQ(listener.released.size(), 1u);
}

TEST_F(ValuePointer, IsNullWithoutReleaseOnceTheValueIsDeleted)
{
    ReleaseListener listener(tree);
    holder.GetFromTree(QStringLiteral("/a/v"));
    value->SetState(ValueStateDeleted, nullptr);
    EXPECT_FALSE(holder);
    holder.Reset();
    EXPECT_THAT(listener.released, IsEmpty());
}

TEST_F(ValuePointer, LooksAtNothingButADeletedState)
{
    holder.GetFromTree(QStringLiteral("/a/v"));
    value->SetState(ValueStateSeeded, nullptr);
    value->SetState(ValueStateConnectionLost, nullptr);
    value->NotifyObservers(ChangeCodeDeleted, nullptr);
    value->SetValue(QStringLiteral("x"), nullptr);
    holder.Update(value, ChangeCodeDeleted);
    EXPECT_EQ(holder.Get(), value);
}

TEST_F(ValuePointer, CopiesHoldForThemselves)
{
    ReleaseListener listener(tree);
    holder.GetFromTree(QStringLiteral("/a/v"));
    ValuePtr<TextValue> copy(holder);
    ValuePtr<TextValue> assigned;
    assigned = holder;
    holder.Reset();
    EXPECT_EQ(copy.Get(), value);
    EXPECT_EQ(assigned.Get(), value);
    tree.removeValue(QStringLiteral("/a/v"));
    EXPECT_FALSE(copy);
    EXPECT_FALSE(assigned);
    EXPECT_EQ(listener.released.size(), 1u);
}

TEST_F(ValuePointer, HoldsAlsoAValueThatIsInNoTree)
{
    {
        TextValue free;
        holder.attach(&free);
        holder.attach(&free);
        EXPECT_EQ(holder.Get(), &free);
    }
    EXPECT_FALSE(holder);
}

class ObservingPointer : public TreeTest
{
protected:
    TextValue *value = add<TextValue>(QStringLiteral("/a/"), QStringLiteral("v"));
    TextValue *other = add<TextValue>(QStringLiteral("/a/"), QStringLiteral("w"));
    LoggingObserver observer{"o", log};
    ValueObservingPtr<TextValue> holder{&observer};
    void setBoth(const char *text)
    {
        value->SetValue(QLatin1String(text), nullptr);
        other->SetValue(QLatin1String(text), nullptr);
    }
};

TEST_F(ObservingPointer, ObservesWhileItHolds)
{
    holder.GetFromTree(QStringLiteral("/a/v"));
    setBoth("1");
    EXPECT_THAT(taken(), ElementsAre("o 3"));
    holder.GetFromTree(QStringLiteral("/a/w"));
    setBoth("2");
    EXPECT_THAT(taken(), ElementsAre("o 3"));
    EXPECT_EQ(observer.subject, other);
    holder.Reset();
    setBoth("3");
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ObservingPointer, ObservesWhatItCreates)
{
    EXPECT_TRUE(holder.getOrCreate(QStringLiteral("/a/new")));
    holder->SetValue(QStringLiteral("x"), nullptr);
    EXPECT_THAT(taken(), ElementsAre("o 3"));
}

TEST_F(ObservingPointer, EndsObservingWhenItEnds)
{
    {
        ValueObservingPtr<TextValue> brief(&observer);
        brief.GetFromTree(QStringLiteral("/a/v"));
    }
    setBoth("1");
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ObservingPointer, KeepsTheObserverWhileAnotherWantsIt)
{
    holder.GetFromTree(QStringLiteral("/a/v"));
    {
        const ValueObservingPtr<TextValue> copy(holder);
        ValueObservingPtr<TextValue> separate(&observer);
        separate.GetFromTree(QStringLiteral("/a/v"));
        separate = copy;
        separate = holder;
    }
    setBoth("1");
    EXPECT_THAT(taken(), ElementsAre("o 3"));
    const ValueObservingPtr<TextValue> last(holder);
    holder.Reset();
    setBoth("2");
    EXPECT_THAT(taken(), ElementsAre("o 3"));
}

TEST_F(ObservingPointer, TakesTheObserverOfWhatIsAssigned)
{
    LoggingObserver second("second", log);
    ValueObservingPtr<TextValue> target(&second);
    target.GetFromTree(QStringLiteral("/a/w"));
    holder.GetFromTree(QStringLiteral("/a/v"));
    target = holder;
    holder.Reset();
    setBoth("1");
    EXPECT_THAT(taken(), ElementsAre("o 3"));
}

TEST_F(ObservingPointer, CanHoldTheNextValueAfterTheFirstOneWent)
{
    holder.GetFromTree(QStringLiteral("/a/v"));
    tree.removeValue(QStringLiteral("/a/v"));
    taken();
    EXPECT_TRUE(holder.getOrCreate(QStringLiteral("/a/v")));
    holder->SetValue(QStringLiteral("x"), nullptr);
    EXPECT_THAT(taken(), ElementsAre("o 3"));
}

class NodePointer : public TreeTest
{
protected:
    Node *node = tree.addNode(QStringLiteral("/a/n"));
};

TEST_F(NodePointer, FindsItsNode)
{
    add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    NodePtr holder;
    EXPECT_TRUE(holder.GetFromTree(QStringLiteral("/a/n/")));
    Node *const held = holder;
    EXPECT_EQ(held, node);
    EXPECT_FALSE(holder.GetFromTree(QStringLiteral("/a/v"))) << "that is a value";
    EXPECT_EQ(holder.Get(), nullptr);
}

TEST_F(NodePointer, IsNullWhenTheNodeGoes)
{
    NodePtr holder;
    holder.GetFromTree(QStringLiteral("/a/n"));
    const NodePtr copy(holder);
    tree.removeNode(QStringLiteral("/a"));
    EXPECT_EQ(holder.Get(), nullptr);
    EXPECT_EQ(copy.Get(), nullptr);
}

TEST_F(NodePointer, ObservesWhileItHolds)
{
    LoggingObserver observer("o", log);
    NodeObservingPtr holder(observer);
    holder.GetFromTree(QStringLiteral("/a/n"));
    add<TextValue>(QStringLiteral("/a/n"), QStringLiteral("v"));
    EXPECT_THAT(taken(), ElementsAre("o 15", "o 16"));
    tree.removeValue(QStringLiteral("/a/n/v"));
    EXPECT_THAT(taken(), ElementsAre("o 16"));
    holder.Reset();
    add<TextValue>(QStringLiteral("/a/n"), QStringLiteral("v"));
    EXPECT_THAT(taken(), IsEmpty());
}
} // namespace
