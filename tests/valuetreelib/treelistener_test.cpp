#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/commandframe.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/icommandlistoptimizer.h"
#include "valuetreelib/itreelistener.h"
#include "valuetreelib/valuefactory.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

#include <QHash>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it hears, as text.
class Notes : public ITreeListener
{
public:
    explicit Notes(Log &log) : log(log) {}
    void itemAdded(TreeItem &item, IObserver *) override { note(item.isNode() ? "node" : "value", item); }
    void itemRemoved(TreeItem &item, IObserver *) override { note("removed", item); }
    void valueChanged(const ValueChange &change) override
    {
        note((change.forced ? "forced " : "changed ") + std::to_string(change.code), change.value);
        originator = change.originator;
    }
    void commandRecorded(ValueBase &value, const ValueBase::CommandOnValue &command) override
    {
        note("command " + std::to_string(command.GetCommandId()), value);
    }
    void valueReleased(ValueBase &value) override { note("released", value); }
    void note(const std::string &what, const TreeItem &item)
    {
        log.push_back(what + " " + item.GetPathName().toStdString());
        if (react)
            std::exchange(react, nullptr)();
    }

    Log &log;
    std::function<void()> react;
    IObserver *originator = nullptr;
};

class Listener : public TreeTest
{
protected:
    Listener() { tree.addListener(QStringLiteral("a/"), &notes); }
    ~Listener() override { tree.removeListener(&notes); }
    Notes notes{log};
};

TEST_F(Listener, HearsOfNewItemsTopDown)
{
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("v"));
    EXPECT_THAT(taken(), ElementsAre("node /a", "node /a/b", "value /a/b/v"));
    tree.addNode(QStringLiteral("/a/c"));
    EXPECT_THAT(taken(), ElementsAre("node /a/c"));
}

TEST_F(Listener, HearsNothingOfWhatIsElsewhere)
{
    auto *const beside = add<TextValue>(QStringLiteral("/ab/"), QStringLiteral("v"));
    auto *const samePath = add<TextValue>(QStringLiteral("/"), QStringLiteral("a"));
    beside->SetValue(QStringLiteral("x"), nullptr);
    samePath->SetValue(QStringLiteral("x"), nullptr);
    EXPECT_FALSE(beside->Record());
    EXPECT_FALSE(samePath->Record());
    tree.removeNode(QStringLiteral("/ab"));
    tree.removeValue(QStringLiteral("/a"));
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Listener, HearsOfChangesWithTheirOriginator)
{
    auto *const value = add<ValueNumeric<int>>(QStringLiteral("/a/"), QStringLiteral("v"));
    LoggingObserver originator("o", log);
    taken();
    value->SetValue(1, &originator);
    EXPECT_EQ(notes.originator, &originator);
    value->SetState(ValueStateSeeded, nullptr);
    EXPECT_EQ(notes.originator, nullptr);
    value->SetMinMax(0, 5, 1, nullptr);
    value->HasChanged(ChangeCodeValue, nullptr);
    value->SetValue(1, nullptr);
    EXPECT_THAT(taken(), ElementsAre("changed 3 /a/v", "changed 2 /a/v", "changed 4 /a/v", "forced 3 /a/v"));
}

TEST_F(Listener, HearsBeforeObserversAndSoInTheOrderOfTheChanges)
{
    auto *const value = add<Value<int>>(QStringLiteral("/a/"), QStringLiteral("v"));
    auto *const answer = add<Value<int>>(QStringLiteral("/a/"), QStringLiteral("answer"));
    LoggingObserver observer("o", log);
    value->AddObserver(&observer);
    observer.react = [answer] { answer->SetValue(1, nullptr); };
    taken();
    value->SetValue(1, nullptr);
    EXPECT_THAT(taken(), ElementsAre("changed 3 /a/v", "o 3", "changed 3 /a/answer"));
}

TEST_F(Listener, HearsOfATransactionWhatItCameTo)
{
    auto *const value = add<ValueNumeric<int>>(QStringLiteral("/a/"), QStringLiteral("v"));
    taken();
    value->StartTransaction(nullptr);
    value->SetState(ValueStateSeeded, nullptr);
    value->SetValue(1, nullptr);
    value->SetValue(2, nullptr);
    value->SetMinMax(0, 5, 1, nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    value->EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("changed 4 /a/v", "changed 3 /a/v", "changed 2 /a/v"));
    value->StartTransaction(nullptr);
    value->HasChanged(ChangeCodeValue, nullptr);
    value->EndTransaction(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("forced 3 /a/v"));
}

TEST_F(Listener, HearsOfEachItemThatIsRemovedOnce)
{
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("v"));
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("w"));
    LoggingObserver parent("parent", log);
    tree.findNode(QStringLiteral("/a"))->AddObserver(&parent);
    taken();
    tree.removeValue(QStringLiteral("/a/b/v"));
    EXPECT_THAT(taken(), ElementsAre("removed /a/b/v"));
    tree.removeNode(QStringLiteral("/a/b"));
    EXPECT_THAT(taken(), ElementsAre("removed /a/b", "removed /a/b/w", "parent 16"));
}

TEST_F(Listener, HearsOfItsOwnItemsWhenWhatIsAboveThemIsRemoved)
{
    tree.addListener(QStringLiteral("/x/y/z"), &notes);
    add<TextValue>(QStringLiteral("/x/y/z"), QStringLiteral("v"));
    taken();
    tree.removeNode(QStringLiteral("/x"));
    EXPECT_THAT(taken(), ElementsAre("removed /x/y/z", "removed /x/y/z/v"));
}

TEST_F(Listener, HearsNothingMoreOfWhatWasRemoved)
{
    auto *const value = add<Value<int>>(QStringLiteral("/a/b/"), QStringLiteral("v"));
    LoggingObserver observer("o", log);
    value->AddObserver(&observer);
    observer.react = [value] {
        value->DeleteObservers();
        value->SetValue(5, nullptr);
    };
    taken();
    tree.removeNode(QStringLiteral("/a/b"));
    EXPECT_THAT(taken(), ElementsAre("removed /a/b", "removed /a/b/v", "o 2"));
}

TEST_F(Listener, MayLeaveWhileItIsTold)
{
    Notes second(log);
    tree.addListener(QStringLiteral("/"), &second);
    notes.react = [this, &second] {
        tree.removeListener(&notes);
        tree.removeListener(&second);
    };
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("v"));
    EXPECT_THAT(taken(), ElementsAre("node /a"));
}

/// A value that tells its changes by commands: a list of texts that only grows.
class ListValue : public TextValue
{
public:
    class AppendCommand;
    ValueType GetType() const override { return 200; }
    void append(const QString &text, IObserver *originator);
    std::unique_ptr<CommandOnValue> CreateNextCommand(quint8 command, ByteCursor &payload, IObserver *originator,
                                                      unsigned flags) override;
    std::unique_ptr<ICommandListOptimizer> CreateCommandListOptimizer() const override;
    QStringList texts;
};

class ListValue::AppendCommand : public ValueBase::CommandOnValue
{
public:
    AppendCommand(ListValue *target, const QString &text, IObserver *originator)
        : CommandOnValue(MapSetAtCommand, target, originator), list(target), text(text)
    {
    }
    void Execute() override { list->append(text, originator()); }
    void AddCommandString(std::string &out) const override
    {
        CommandOnValue::AddCommandString(out);
        StreamFormat<QString>::append(out, text);
    }
    std::unique_ptr<CommandOnValue> Clone() const override { return std::make_unique<AppendCommand>(*this); }

private:
    ListValue *list;
    QString text;
};

void ListValue::append(const QString &text, IObserver *originator)
{
    texts.append(text);
    if (Record())
        RecordCommand(AppendCommand(this, text, originator));
    NotifyObservers(ChangeCodeValue, originator);
}

std::unique_ptr<ValueBase::CommandOnValue> ListValue::CreateNextCommand(quint8 command, ByteCursor &payload,
                                                                        IObserver *originator, unsigned flags)
{
    QString text;
    if (command != MapSetAtCommand)
        return TextValue::CreateNextCommand(command, payload, originator, flags);
    return StreamFormat<QString>::read(payload, text) ? std::make_unique<AppendCommand>(this, text, originator) : nullptr;
}

std::unique_ptr<ICommandListOptimizer> ListValue::CreateCommandListOptimizer() const
{
    struct KeepLast : ICommandListOptimizer {
        void optimize(CommandList &commands) override { commands.erase(commands.begin(), commands.end() - 1); }
    };
    return std::make_unique<KeepLast>();
}

TEST_F(Listener, HearsOfCommandsBeforeTheirNotification)
{
    auto *const list = add<ListValue>(QStringLiteral("/a/"), QStringLiteral("list"));
    EXPECT_TRUE(list->Record());
    taken();
    list->append(QStringLiteral("x"), nullptr);
    EXPECT_THAT(taken(), ElementsAre("command 20 /a/list", "forced 3 /a/list"));
    list->StartTransaction(nullptr);
    list->append(QStringLiteral("y"), nullptr);
    EXPECT_THAT(taken(), ElementsAre("command 20 /a/list"));
    list->EndTransaction(ChangeCodeValue, nullptr);
}

class Command : public TreeTest
{
protected:
    ListValue list;
};

TEST_F(Command, IsFramedAndExecuted)
{
    const ListValue::AppendCommand command(&list, QStringLiteral("x"), nullptr);
    std::string out;
    list.AddCommand(command, out);
    list.AddCommand(*command.Clone(), out);
    EXPECT_EQ(out, std::string("\x03\x14\x00x\x03\x14\x00x", 8));
    EXPECT_EQ(command.target(), &list);
    EXPECT_TRUE(list.SetCommandString(out, nullptr));
    EXPECT_EQ(list.texts, (QStringList{QStringLiteral("x"), QStringLiteral("x")}));
}

TEST_F(Command, ThatIsMalformedIsNotExecuted)
{
    EXPECT_FALSE(list.SetCommandString(std::string("\x01\x14", 2), nullptr));
    EXPECT_FALSE(list.SetCommandString(std::string("\x02\x15\x00", 3), nullptr));
    EXPECT_TRUE(list.texts.isEmpty());
    EXPECT_EQ(traces.size(), 2u);
}

TEST_F(Command, ListsAreOptimisedByTheirClass)
{
    ValueBase::CommandList commands;
    for (const char *text : {"x", "y", "z"})
        commands.push_back(std::make_unique<ListValue::AppendCommand>(&list, QLatin1String(text), nullptr));
    TextValue().OptimizeCommandList(commands);
    EXPECT_EQ(commands.size(), 3u) << "no optimizer";
    list.OptimizeCommandList(commands);
    ASSERT_EQ(commands.size(), 1u);
    list.PreWorkCommandList(commands);
    commands.front()->Execute();
    EXPECT_EQ(list.texts, QStringList{QStringLiteral("z")});
}

/// One direction of a mirror, without any transport: everything goes over as bytes, paths and type numbers.
class Link : public ITreeListener, public IObserver
{
public:
    Link(Tree &from, Tree &to) : from(from), to(to) { from.addListener(QStringLiteral("/m"), this); }
    ~Link() override { from.removeListener(this); }
    void Update(Observable *, TChangeCode) override {}

    void itemAdded(TreeItem &item, IObserver *originator) override
    {
        if (originator == opposite)
            return;
        ++sent;
        if (item.isNode()) {
            to.addNode(item.GetPathName(), this);
            return;
        }
        auto &value = static_cast<ValueBase &>(item);
        std::string state;
        value.AddObjectStateStringForTransmission(state);
        auto copy = ValueFactory::Instance().create(value.GetType(), value.name());
        copy->SetCommandString(state, this);
        to.addValue(value.parent()->GetPathName(), std::move(copy), this);
    }
    void itemRemoved(TreeItem &item, IObserver *originator) override
    {
        if (originator == opposite)
            return;
        ++sent;
        item.isNode() ? to.removeNode(item.GetPathName(), this) : to.removeValue(item.GetPathName(), this);
    }
    void valueChanged(const ValueChange &change) override
    {
        std::string frames;
        change.value.AddCommandForTransmission(change.code, change.forced, frames);
        if (change.originator == opposite || frames.empty())
            return;
        ++sent;
        EXPECT_TRUE(to.findValue(change.value.GetPathName())->SetCommandString(frames, this));
    }
    void commandRecorded(ValueBase &, const ValueBase::CommandOnValue &) override {}
    void valueReleased(ValueBase &) override {}

    Tree &from;
    Tree &to;
    IObserver *opposite = nullptr;
    int sent = 0;
};

class JoinedTrees : public TreeTest
{
protected:
    JoinedTrees()
    {
        there.opposite = &back;
        back.opposite = &there;
    }
    template <typename T> T *twin(const ValueBase *value)
    {
        return dynamic_cast<T *>(server.findValue(value->GetPathName()));
    }
    LoggingObserver observer{"there", log}; // outlives the server, which tells it of its end
    Tree server;
    Link there{tree, server};
    Link back{server, tree};
};

TEST_F(JoinedTrees, ShareNewValuesInBothDirections)
{
    add<ValueSelection>(QStringLiteral("/m/a/"), QStringLiteral("s"));
    EXPECT_NE(dynamic_cast<ValueSelection *>(server.findValue(QStringLiteral("/m/a/s"))), nullptr);
    server.addValue(QStringLiteral("/m/b"), ValueFactory::Instance().create(ValueTypeBool, QStringLiteral("f")));
    EXPECT_NE(dynamic_cast<Value<bool> *>(tree.findValue(QStringLiteral("/m/b/f"))), nullptr);
    EXPECT_EQ(there.sent, 3) << "/m, /m/a and the value, no echo";
    EXPECT_EQ(back.sent, 2);
}

TEST_F(JoinedTrees, ShareChangesWithoutEcho)
{
    auto *const mine = add<ValueSelection>(QStringLiteral("/m/"), QStringLiteral("s"));
    auto *const theirs = twin<ValueSelection>(mine);
    there.sent = back.sent = 0;
    mine->setTexts({QStringLiteral("x"), QStringLiteral("y")}, nullptr);
    mine->selectKey(1, nullptr);
    mine->SetState(ValueStateSeeded, nullptr);
    EXPECT_TRUE(theirs->Compare(mine));
    theirs->selectKey(0, nullptr);
    theirs->clearItems(nullptr);
    EXPECT_TRUE(mine->Compare(theirs));
    EXPECT_EQ(there.sent, 3);
    EXPECT_EQ(back.sent, 3) << "key, list, lost key";
}

TEST_F(JoinedTrees, ShareARepeatedAnswer)
{
    auto *const mine = add<TextValue>(QStringLiteral("/m/"), QStringLiteral("ErrorCode"));
    mine->SetValue(QStringLiteral("5@Error@42@disk full"), nullptr);
    twin<TextValue>(mine)->AddObserver(&observer);
    mine->HasChanged(ChangeCodeValue, nullptr);
    mine->HasChanged(ChangeCodeValue, nullptr);
    EXPECT_THAT(taken(), ElementsAre("there 3", "there 3"));
}

TEST_F(JoinedTrees, ShareRemoval)
{
    auto *const mine = add<TextValue>(QStringLiteral("/m/n/"), QStringLiteral("v"));
    twin<TextValue>(mine)->AddObserver(&observer);
    tree.removeNode(QStringLiteral("/m/n"));
    EXPECT_THAT(taken(), ElementsAre("there 2", "there 18"));
    EXPECT_EQ(back.sent, 0);
    EXPECT_EQ(server.subtree(QStringLiteral("/m")).size(), 1u);
}
} // namespace
