#include "tests/orbconnection/joinedmirror.h"
#include "tests/orbconnection/observers.h"

using namespace values;

namespace
{
/// Changes of one path on both sides, that cross on the way. Each ends with equal trees.
class Conflict : public JoinedTrees
{
protected:
    ~Conflict() override { expectEqualTrees(); }

    Value<int> &number(Tree &tree, const char *path) const
    {
        return dynamic_cast<Value<int> &>(*tree.findValue(QLatin1String(path)));
    }
    void set(const char *path, int content) { number(clientTree, path).SetValue(content, nullptr); }
    int here(const char *path) const { return number(clientTree, path).GetValue(); }
    /// Keeps a number at 100 or below.
    static std::unique_ptr<Answer> clamp(Tree &tree, const char *path)
    {
        return std::make_unique<Answer>(tree, path, ChangeCodeValue, [&tree, path] {
            auto &value = dynamic_cast<Value<int> &>(*tree.findValue(QLatin1String(path)));
            value.SetValue(std::min(value.GetValue(), 100), nullptr);
        });
    }

    Value<int> *const level = addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Level"));
};

TEST_F(Conflict, OfTheServersAnswerAndAnotherPartOfTheValue)
{
    pair.connect();
    set("/Sub/A/Device/Level", 1);
    pair.carryToServer();
    level->SetValue(2, nullptr);
    number(clientTree, "/Sub/A/Device/Level").SetState(ValueStateSeeded, nullptr);
    pair.carryToClient(); // before the server has the state
    EXPECT_EQ(here("/Sub/A/Device/Level"), 1);
    pair.carry();
    EXPECT_EQ(here("/Sub/A/Device/Level"), 2);
    EXPECT_EQ(level->GetState(), ValueStateSeeded);
}

TEST_F(Conflict, OfTheServersClampAndTheNextContent)
{
    pair.connect();
    const auto clamping = clamp(serverTree, "/K/Device/Level");
    set("/Sub/A/Device/Level", 500);
    pair.carryToServer();
    ASSERT_EQ(level->GetValue(), 100);
    set("/Sub/A/Device/Level", 50);
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/Level"), 50);
    pair.carry();
    EXPECT_EQ(level->GetValue(), 50);
}

TEST_F(Conflict, OfTheServersClampAndTheContentThatWasClamped)
{
    pair.connect();
    const auto clamping = clamp(serverTree, "/K/Device/Level");
    for (int times = 0; times < 2; ++times) {
        set("/Sub/A/Device/Level", 500);
        pair.carry();
        EXPECT_EQ(here("/Sub/A/Device/Level"), 100);
    }
}

TEST_F(Conflict, WithinARecordOfSeveralFramesFromTheClient)
{
    pair.connect();
    const auto clamping = clamp(serverTree, "/K/Device/Level");
    set("/Sub/A/Device/Level", 500);
    number(clientTree, "/Sub/A/Device/Level").SetState(ValueStateSeeded, nullptr);
    pair.carryToServer();
    set("/Sub/A/Device/Level", 50);
    pair.carryToClient();
    pair.carry();
    EXPECT_EQ(level->GetValue(), 50);
    EXPECT_EQ(level->GetState(), ValueStateSeeded);
}

TEST_F(Conflict, WithinARecordOfSeveralFramesFromTheServer)
{
    pair.connect();
    const auto clamping = clamp(clientTree, "/Sub/A/Device/Level");
    level->SetValue(500, nullptr);
    level->SetState(ValueStateSeeded, nullptr);
    pair.carryToClient();
    // The state behind the content is older than the answer.
    EXPECT_EQ(number(clientTree, "/Sub/A/Device/Level").GetState(), ValueStateValid);
    level->SetValue(50, nullptr);
    pair.carry();
    EXPECT_EQ(number(clientTree, "/Sub/A/Device/Level").GetState(), ValueStateSeeded);
    EXPECT_EQ(level->GetValue(), 100); // which was applied last
}

TEST_F(Conflict, WithinAnAnnouncement)
{
    pair.connect();
    serverTree.addNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    const Answer clamping(serverTree, "/K/Device/D1", ChangeCodeChildAdded,
                          [this] { number(serverTree, "/K/Device/D1/New").SetValue(100, nullptr); });
    addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("New"));
    pair.client.flush();
    set("/Sub/A/Device/D1/New", 500);
    pair.carry();
    EXPECT_EQ(here("/Sub/A/Device/D1/New"), number(serverTree, "/K/Device/D1/New").GetValue());
    set("/Sub/A/Device/D1/New", 50);
    pair.carry();
    EXPECT_EQ(number(serverTree, "/K/Device/D1/New").GetValue(), 50);
}

TEST_F(Conflict, WithinAnAnnouncementThatMeetsAValue)
{
    addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("New"));
    pair.connect();
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("New"));
    const auto clamping = clamp(serverTree, "/K/Device/New");
    set("/Sub/A/Device/New", 500);
    pair.carryToServer();
    ASSERT_EQ(number(serverTree, "/K/Device/New").GetValue(), 100);
    set("/Sub/A/Device/New", 50);
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/New"), 50);
    pair.carry();
    EXPECT_EQ(number(serverTree, "/K/Device/New").GetValue(), 50);
}

TEST_F(Conflict, OfASnapshotAndWhatItsObserverAnswers)
{
    addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Level"));
    const auto clamping = clamp(clientTree, "/Sub/A/Device/Level");
    level->SetValue(500, nullptr);
    pair.connect();
    EXPECT_EQ(level->GetValue(), 100);
    pair.disconnect();
    level->SetValue(700, nullptr);
    pair.connect();
    EXPECT_EQ(level->GetValue(), 100);
}

TEST_F(Conflict, OfASnapshotAndWhatTheObserverOfTheNodeAnswers)
{
    clientTree.addNode(QStringLiteral("/Sub/A/Device"));
    const Answer answer(clientTree, "/Sub/A/Device", ChangeCodeChildAdded, [this] {
        if (clientTree.findValue(QStringLiteral("/Sub/A/Device/Level")))
            set("/Sub/A/Device/Level", 7);
    });
    pair.connect();
    EXPECT_EQ(level->GetValue(), 7);
}

TEST_F(Conflict, OfANodeThatTheServerRemovesAndAValueBelowIt)
{
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device/D1/D2"), QStringLiteral("X"));
    pair.connect();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    set("/Sub/A/Device/D1/D2/X", 1);
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/D1/D2/X"), 1); // until the server has heard of it
    pair.carry();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
}

TEST_F(Conflict, OfAChangeAndAValueThatTheServerMakesAnewThere)
{
    pair.connect();
    set("/Sub/A/Device/Level", 1);
    pair.client.flush(); // on its way, and its number names the path, not the value that was there
    serverTree.removeValue(QStringLiteral("/K/Device/Level"));
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Level"))->SetValue(9, nullptr);
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/Level"), 1);
    pair.carry();
    EXPECT_EQ(number(serverTree, "/K/Device/Level").GetValue(), 1);
}

TEST_F(Conflict, OfALongContentAndAStateThatIsPassedOver)
{
    pair.connect();
    state->SetState(ValueStateSeeded, nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QString(1000, u'x'), nullptr);
    pair.carryToClient();
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
    pair.carry();
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateSeeded);
}

TEST_F(Conflict, OfALongContentAndAValueOfAnotherClass)
{
    pair.connect();
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"))->SetValue(7, nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QString(1000, u'x'), nullptr);
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/State").size(), 1000);
    pair.carry();
    EXPECT_EQ(here("/Sub/A/Device/State"), 7);
}

/// A selection of three, the middle one of which is selected.
class ConflictOfSelections : public Conflict
{
protected:
    ConflictOfSelections()
    {
        atServer->setTexts({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}, nullptr);
        atServer->selectKey(1, nullptr);
        pair.connect();
    }
    ValueSelection *here() const
    {
        return dynamic_cast<ValueSelection *>(clientTree.findValue(QStringLiteral("/Sub/A/Device/Mode")));
    }
    static std::vector<SelItemDesc> itemsWithKeys(std::initializer_list<long> keys)
    {
        std::vector<SelItemDesc> items;
        for (const long key : keys)
            items.emplace_back(QString::number(key), 0, key);
        return items;
    }
    ValueSelection *const atServer = addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mode"));
};

TEST_F(ConflictOfSelections, WhoseListTheServerReplacesWhileTheClientSelects)
{
    atServer->setItems(itemsWithKeys({5, 6}), nullptr);
    here()->selectKey(2, nullptr);
    pair.carryToClient();
    EXPECT_EQ(here()->GetCurrentKey(), 2);
    pair.carry();
    EXPECT_EQ(here()->GetCurrentKey(), ValueSelection::noKey);
    EXPECT_EQ(here()->items(), itemsWithKeys({5, 6}));
}

TEST_F(ConflictOfSelections, WhoseListTheClientReplacesWhileTheServerSelects)
{
    here()->setItems(itemsWithKeys({5, 6}), nullptr);
    atServer->selectKey(2, nullptr);
    pair.carryToClient();
    EXPECT_EQ(here()->items(), itemsWithKeys({5, 6}));
    pair.carry();
    EXPECT_EQ(atServer->GetCurrentKey(), ValueSelection::noKey);
    EXPECT_EQ(atServer->items(), itemsWithKeys({5, 6}));
}

TEST_F(ConflictOfSelections, WhoseListTheClientReplacesByOneWithTheKeyThatTheServerSelects)
{
    here()->setItems(itemsWithKeys({1, 2}), nullptr);
    atServer->selectKey(2, nullptr);
    pair.carryToClient();
    EXPECT_EQ(here()->GetCurrentKey(), 1);
    pair.carry();
    EXPECT_EQ(here()->GetCurrentKey(), 2);
}

TEST_F(ConflictOfSelections, WhoseListBothReplace)
{
    here()->setItems(itemsWithKeys({1, 2}), nullptr);
    atServer->setItems(itemsWithKeys({0, 1}), nullptr);
    atServer->selectKey(0, nullptr);
    pair.carryToClient();
    pair.carry();
    EXPECT_EQ(atServer->items(), itemsWithKeys({1, 2})); // which was applied last
    EXPECT_EQ(here()->GetCurrentKey(), ValueSelection::noKey);
}

/// Both sides make a value at one path, of one class or of two.
class ConflictOfCreations : public Conflict, public testing::WithParamInterface<bool>
{
protected:
    void createOnBothSides()
    {
        pair.connect();
        addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Both"));
        pair.client.flush();
        set("/Sub/A/Device/D1/Both", 1);
        if (GetParam())
            addNew<Value<int>>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Both"))->SetValue(2, nullptr);
        else
            addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Both"), QStringLiteral("two"));
    }
};

TEST_P(ConflictOfCreations, EndsWithTheServersClassAndTheClientsChange)
{
    createOnBothSides();
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/D1/Both"), 1);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1/Both"), GetParam() ? QStringLiteral("1") : QStringLiteral("two"));
    serverTree.findValue(QStringLiteral("/K/Device/D1/Both"))->SetStringValue(QStringLiteral("3"), nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Both"), QStringLiteral("3"));
}

TEST_P(ConflictOfCreations, LeavesTheClientsWhenTheServerRemovesItsOwnBefore)
{
    createOnBothSides();
    pair.session->flush(); // it is on its way, and so is the removal
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carryToClient();
    EXPECT_EQ(here("/Sub/A/Device/D1/Both"), 1);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1/Both"), QStringLiteral("1"));
    serverTree.removeValue(QStringLiteral("/K/Device/D1/Both"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Both"), QStringLiteral("(absent)"));
}

TEST_P(ConflictOfCreations, LeavesNothingWhenTheServerRemovesItAfterwards)
{
    createOnBothSides();
    pair.carryToServer();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carryToClient();
    pair.carry();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
}

INSTANTIATE_TEST_SUITE_P(Classes, ConflictOfCreations, testing::Bool(),
                         [](const auto &row) { return std::string(row.param ? "OfOneClass" : "OfTwoClasses"); });

/// What the client has of a server that is started anew, with nothing in its tree.
class RestartedServer : public JoinedTrees
{
protected:
    ~RestartedServer() override { expectEqualTrees(); }
    void restart()
    {
        pair.disconnect();
        serverTree.removeNode(QStringLiteral("/"));
        serverTree.addNode(QStringLiteral("/K/Device"));
        pair.connect();
        EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    }
    void announce()
    {
        addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Mine"), QString());
        pair.client.flush();
        text(clientTree, "/Sub/A/Device/D1/Mine")->SetValue(QStringLiteral("set"), nullptr);
    }
};

TEST_F(RestartedServer, TakesItsNodesAway)
{
    addText(serverTree, QStringLiteral("/K/Device/D1/D2"), QStringLiteral("X"), QString());
    pair.connect();
    restart();
}

TEST_F(RestartedServer, TakesAwayTheNodesOfWhatTheClientMade)
{
    pair.connect();
    announce();
    pair.carry();
    restart();
}

TEST_F(RestartedServer, TakesAwayTheNodesOfWhatTheClientMadeInVain)
{
    pair.connect();
    announce();
    pair.client.flush(); // and nobody receives it
    restart();
}

TEST_F(RestartedServer, TakesAwayANodeThatTheClientHasEmptied)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    pair.connect();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/D1/X"));
    restart();
}
} // namespace
