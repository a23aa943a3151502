// Runs in two programs: with both sides joined by a function, and over the ORB.
#include "tests/orbconnection/mirrorpair.h"
#include "tests/orbconnection/observers.h"

#include <gmock/gmock.h>

using namespace values;
using testing::ElementsAre;

namespace
{
class Mirror : public TwoTrees
{
protected:
    const std::unique_ptr<MirrorPair> pair =
        MirrorPair::make(serverTree, QStringLiteral("/K/Device"), QStringLiteral("/Sub/A/Device/"));
};

TEST_F(Mirror, TakesOverTheSnapshotUnderAnotherPath)
{
    serverTree.addNode(QStringLiteral("/K/Device/D1/Empty"));
    addText(serverTree, QStringLiteral("/K"), QStringLiteral("Outside"), QStringLiteral("x"));
    pair->connect();
    EXPECT_TRUE(pair->isConnected());
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1/Empty")));
    EXPECT_FALSE(clientTree.findValue(QStringLiteral("/Sub/A/Outside")));
}

TEST_F(Mirror, MakesValuesOfTheSameClasses)
{
    addNew<Value<bool>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Bool"))->SetValue(true, nullptr);
    auto *const number = addNew<ValueNumeric<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Number"));
    number->SetMinMax(1, 9, 2, nullptr);
    number->SetValue(5, nullptr);
    auto *const selection = addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mode"));
    selection->addItem(QStringLiteral("On"), 1.5, 7, nullptr);
    selection->selectKey(7, nullptr);
    number->SetState(ValueStateSeeded, nullptr);
    pair->connect();
    EXPECT_TRUE(dynamic_cast<Value<bool> *>(clientTree.findValue(QStringLiteral("/Sub/A/Device/Bool")))->GetValue());
    EXPECT_TRUE(clientTree.findValue(QStringLiteral("/Sub/A/Device/Number"))->Compare(number));
    EXPECT_TRUE(clientTree.findValue(QStringLiteral("/Sub/A/Device/Mode"))->Compare(selection));
}

TEST_F(Mirror, MergesChangesThatWaitForTheSameDelivery)
{
    pair->connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    for (const char *content : {"a", "b", "c"})
        state->SetValue(QLatin1String(content), nullptr);
    pair->carry();
    EXPECT_THAT(diary.contents, ElementsAre("c"));
}

TEST_F(Mirror, BringsEachChangeOfAValueThatIsNotOptimised)
{
    state->setOptimized(false);
    pair->connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    for (const char *content : {"a", "b", "b", "c"})
        state->SetValue(QLatin1String(content), nullptr);
    pair->carry();
    EXPECT_THAT(diary.contents, ElementsAre("a", "b", "c"));
}

TEST_F(Mirror, BringsAForcedNoticeOfAnEqualContent)
{
    pair->connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    state->HasChanged(ChangeCodeValue, nullptr);
    pair->carry();
    EXPECT_THAT(diary.codes, ElementsAre(ChangeCodeValue));
}

TEST_F(Mirror, BringsItemsThatComeAndGo)
{
    pair->connect();
    addText(serverTree, QStringLiteral("/K/Device/D1/Admin"), QStringLiteral("X"), QStringLiteral("1"));
    pair->carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Admin/X"), QStringLiteral("1"));
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair->carry();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
}

TEST_F(Mirror, KeepsItsOwnTopWhenTheServersGoes)
{
    pair->connect();
    serverTree.removeNode(QStringLiteral("/K"));
    EXPECT_TRUE(pair->carryUntil([this] { return at("/Sub/A/Device/State") == QLatin1String("(absent)"); }));
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"), QStringLiteral("back"));
    pair->carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("back"));
}

TEST_F(Mirror, SendsAClientsChangeWithoutAnEcho)
{
    pair->connect();
    Diary serverDiary(state);
    Diary clientDiary(text(clientTree, "/Sub/A/Device/State"));
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair->carry();
    EXPECT_THAT(serverDiary.contents, ElementsAre("busy"));
    EXPECT_THAT(clientDiary.contents, ElementsAre("busy"));
}

TEST_F(Mirror, ForwardsAClientsChangeToTheOthers)
{
    const auto other = MirrorPair::make(serverTree, QStringLiteral("/K"), QStringLiteral("/O"));
    pair->connect();
    other->connect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair->carry();
    other->carry();
    EXPECT_EQ(at("/O/Device/State"), QStringLiteral("busy"));
}

TEST_F(Mirror, EndsAlikeWhenBothSidesSetAValueAtOnce)
{
    pair->connect();
    state->SetValue(QStringLiteral("server"), nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("client"), nullptr);
    pair->carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), state->GetValue());
}

TEST_F(Mirror, SendsALocalValueOnlyOnceItIsSet)
{
    pair->connect();
    auto *const local = addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Mine"), QString());
    pair->carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("(absent)"));
    local->SetValue(QStringLiteral("set"), nullptr);
    local->SetValue(QStringLiteral("again"), nullptr);
    pair->carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("again"));
    text(serverTree, "/K/Device/D1/Mine")->SetValue(QStringLiteral("answer"), nullptr);
    pair->carry();
    EXPECT_EQ(local->GetValue(), QStringLiteral("answer"));
    EXPECT_TRUE(pair->isConnected());
}

TEST_F(Mirror, LetsTheServersContentWinOverALocalSeed)
{
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QStringLiteral("seed"));
    pair->connect();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
}

TEST_F(Mirror, ReplacesALocalValueOfAnotherClass)
{
    addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"));
    pair->connect();
    ASSERT_TRUE(text(clientTree, "/Sub/A/Device/State"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
}

TEST_F(Mirror, TellsOfItsLossInOrder)
{
    pair->connect();
    auto *const value = text(clientTree, "/Sub/A/Device/State");
    Diary valueDiary(value);
    Diary nodeDiary(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    pair->disconnect();
    EXPECT_EQ(value->GetState(), ValueStateConnectionLost);
    EXPECT_THAT(valueDiary.codes, ElementsAre(ChangeCodeState, ChangeCodeDeleted));
    EXPECT_THAT(nodeDiary.codes, ElementsAre(ChangeCodeDeleted));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
}

TEST_F(Mirror, IsAsTheServerSaysAfterAReconnection)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Old"), QStringLiteral("x"));
    pair->connect();
    pair->disconnect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("in vain"), nullptr);
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    addText(serverTree, QStringLiteral("/K/Device/D2"), QStringLiteral("New"), QStringLiteral("y"));
    pair->connect();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_EQ(at("/Sub/A/Device/D2/New"), QStringLiteral("y"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
}

TEST_F(Mirror, HearsOfTheServersChangesAfterItsOwnInEachSession)
{
    for (const QString &session : {QStringLiteral("first"), QStringLiteral("second")}) {
        pair->connect();
        text(clientTree, "/Sub/A/Device/State")->SetValue(session, nullptr);
        pair->carry();
        addText(serverTree, QStringLiteral("/K/Device"), session, QString());
        pair->carry();
        state->SetValue(session + u'!', nullptr);
        pair->carry();
        EXPECT_EQ(at("/Sub/A/Device/State"), session + u'!');
        pair->disconnect();
    }
}

TEST_F(Mirror, CutsALargeSnapshotIntoBatches)
{
    for (int i = 0; i < 5000; ++i)
        addText(serverTree, QStringLiteral("/K/Device/Many"), QString::number(i), QString(100, u'x'));
    pair->connect();
    EXPECT_EQ(clientTree.subtree(QStringLiteral("/Sub/A/Device/Many")).size(), 5001u);
}

TEST_F(Mirror, KeepsNamesOfAnyCharacters)
{
    // The third begins with a byte order mark, which decoders like to drop.
    const QStringList names{QStringLiteral("plain"), QStringLiteral("Gr\u00F6\u00DFe"), QStringLiteral("\uFEFFmarked"),
                            QStringLiteral("\U0001F4FB"), QStringLiteral("\u0424")};
    for (const QString &name : names)
        addText(serverTree, QStringLiteral("/K/Device"), name, name);
    pair->connect();
    for (const QString &name : names) {
        const ValueBase *const mirrored = clientTree.findValue(QStringLiteral("/Sub/A/Device/") + name);
        ASSERT_TRUE(mirrored) << qPrintable(name);
        EXPECT_EQ(mirrored->GetStringValue(), name);
    }
}

TEST_F(Mirror, OfANodeThatIsNotThereYetIsEmptyUntilItComes)
{
    const auto early = MirrorPair::make(serverTree, QStringLiteral("/Later"), QStringLiteral("/L"));
    early->connect();
    EXPECT_TRUE(early->isConnected());
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/L")));
    addText(serverTree, QStringLiteral("/Later"), QStringLiteral("X"), QStringLiteral("1"));
    early->carry();
    EXPECT_EQ(at("/L/X"), QStringLiteral("1"));
}

TEST_F(Mirror, GivesAClientBackTheWholeNodeThatItHasRemoved)
{
    addText(serverTree, QStringLiteral("/K/Device/Channel/1"), QStringLiteral("State"), QStringLiteral("free"));
    pair->connect();
    clientTree.removeNode(QStringLiteral("/Sub/A/Device"));
    pair->carry();
    EXPECT_TRUE(pair->isConnected());
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(at("/Sub/A/Device/Channel/1/State"), QStringLiteral("free"));
}

TEST_F(Mirror, GivesAClientBackItsTopAlsoWhenNothingStandsBelowIt)
{
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair->connect();
    clientTree.removeNode(QStringLiteral("/Sub/A/Device"));
    EXPECT_TRUE(pair->carryUntil([this] { return clientTree.findNode(QStringLiteral("/Sub/A/Device")) != nullptr; }));
}

TEST_F(Mirror, LeavesTheValueOfItsOwnPathAlone)
{
    addText(clientTree, QStringLiteral("/Sub/A"), QStringLiteral("Device"), QStringLiteral("D1"));
    pair->connect();
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair->carry();
    pair->disconnect();
    EXPECT_EQ(at("/Sub/A/Device"), QStringLiteral("D1"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device")->GetState(), ValueStateValid);
}

TEST_F(Mirror, HasItsTopAgainAfterASnapshotWithoutOne)
{
    pair->connect();
    pair->disconnect();
    clientTree.removeNode(QStringLiteral("/Sub/A/Device"));
    serverTree.removeNode(QStringLiteral("/K"));
    pair->connect();
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"), QStringLiteral("back"));
    pair->carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("back"));
}

TEST_F(Mirror, KeepsItsTopThroughASnapshotWithoutOne)
{
    pair->connect();
    const Node *const top = clientTree.findNode(QStringLiteral("/Sub/A/Device"));
    pair->disconnect();
    serverTree.removeNode(QStringLiteral("/K"));
    pair->connect();
    EXPECT_EQ(clientTree.findNode(QStringLiteral("/Sub/A/Device")), top);
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
}

/// Keeps the text at @p path from being "500".
std::unique_ptr<Answer> clamp(Tree &tree, const char *path)
{
    return std::make_unique<Answer>(tree, path, ChangeCodeValue, [&tree, path] {
        ValueBase *const value = tree.findValue(QLatin1String(path));
        if (value->GetStringValue() == QLatin1String("500"))
            value->SetStringValue(QStringLiteral("100"), nullptr);
    });
}

TEST_F(Mirror, EndsAlikeWhenTheServersObserverAltersAClientsChange)
{
    pair->connect();
    const auto clamping = clamp(serverTree, "/K/Device/State");
    for (const char *content : {"500", "50", "500", "500"}) {
        text(clientTree, "/Sub/A/Device/State")->SetValue(QLatin1String(content), nullptr);
        pair->carry();
        EXPECT_EQ(at("/Sub/A/Device/State"), state->GetValue()) << content;
    }
    EXPECT_EQ(state->GetValue(), QStringLiteral("100"));
}

TEST_F(Mirror, EndsAlikeWhenTheClientsObserverAltersASnapshot)
{
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QString());
    const auto clamping = clamp(clientTree, "/Sub/A/Device/State");
    for (int sessions = 0; sessions < 2; ++sessions) {
        state->SetValue(QStringLiteral("500"), nullptr);
        pair->connect();
        pair->carry();
        EXPECT_EQ(state->GetValue(), QStringLiteral("100"));
        EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("100"));
        pair->disconnect();
    }
}

TEST_F(Mirror, LeavesNoNodeBehindWhenTheServerBeginsAnew)
{
    pair->connect();
    addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Mine"), QString())
        ->HasChanged(ChangeCodeValue, nullptr);
    pair->carry();
    EXPECT_TRUE(serverTree.findNode(QStringLiteral("/K/Device/D1")));
    pair->disconnect();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair->connect();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
}

TEST_F(Mirror, RemovesAtTheServerWhatItHasMadeThereAndNothingElse)
{
    pair->connect();
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"), QString())
        ->HasChanged(ChangeCodeValue, nullptr);
    pair->carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QString());
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/State"));
    pair->carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
}

TEST_F(Mirror, LastsThroughAStateThatSaysThatTheValueIsGone)
{
    pair->connect();
    state->SetState(ValueStateDeleted, nullptr);
    const auto other = MirrorPair::make(serverTree, QStringLiteral("/K"), QStringLiteral("/O"));
    other->connect();
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair->carry();
    other->carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("busy"));
    EXPECT_EQ(at("/O/Device/State"), QStringLiteral("busy"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
}

TEST_F(Mirror, EndsAlikeWhenBothSidesMakeAValueAtOnce)
{
    pair->connect();
    addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Both"), QStringLiteral("client"))
        ->HasChanged(ChangeCodeValue, nullptr);
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Both"))->SetValue(2, nullptr);
    pair->carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Both"), QStringLiteral("2"));
    EXPECT_EQ(atServer("/K/Device/D1/Both"), QStringLiteral("2"));
}

TEST_F(Mirror, EndsAlikeWhenAListIsReplacedWhileItsKeyIsChosen)
{
    auto *const server = addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mode"));
    server->setTexts({QStringLiteral("a"), QStringLiteral("b")}, nullptr);
    pair->connect();
    auto *const client = dynamic_cast<ValueSelection *>(clientTree.findValue(QStringLiteral("/Sub/A/Device/Mode")));
    ASSERT_TRUE(client);
    client->selectKey(1, nullptr);
    server->setTexts({QStringLiteral("a")}, nullptr);
    pair->carry();
    EXPECT_TRUE(client->Compare(server));
    server->selectKey(0, nullptr);
    client->clearItems(nullptr);
    pair->carry();
    EXPECT_TRUE(client->Compare(server));
}

TEST_F(Mirror, TellsEveryoneOfItsLossAndComesBackWhenAnObserverThrows)
{
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Z"), QString());
    pair->connect();
    Thrower thrower;
    text(clientTree, "/Sub/A/Device/State")->AddObserver(&thrower);
    Diary after(text(clientTree, "/Sub/A/Device/Z"));
    pair->disconnect();
    EXPECT_THAT(after.codes, ElementsAre(ChangeCodeState, ChangeCodeDeleted));
    pair->connect();
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
    text(clientTree, "/Sub/A/Device/State")->DeleteObserver(&thrower);
}
} // namespace
