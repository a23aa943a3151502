#include "tests/orbconnection/joinedmirror.h"

#include <gmock/gmock.h>

using namespace values;
using mirror::MirrorClient;
using testing::ElementsAre;

namespace
{
/// Writes down what it is told by @p subject, which must outlive it.
class Diary : public IObserver
{
public:
    explicit Diary(Observable *subject) : subject(subject) { subject->AddObserver(this); }
    ~Diary() override { subject->DeleteObserver(this); }
    void Update(Observable *teller, TChangeCode code) override
    {
        codes.push_back(code);
        if (auto *const value = dynamic_cast<ValueBase *>(teller))
            contents.push_back(value->GetStringValue().toStdString());
    }
    std::vector<int> codes;
    std::vector<std::string> contents;

private:
    Observable *const subject;
};

TEST_F(Mirror, TakesOverTheSnapshotUnderAnotherPath)
{
    serverTree.addNode(QStringLiteral("/K/Device/D1/Empty"));
    addText(serverTree, QStringLiteral("/K"), QStringLiteral("Outside"), QStringLiteral("x"));
    pair.connect();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::SnapshotComplete);
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
    pair.connect();
    EXPECT_TRUE(dynamic_cast<Value<bool> *>(clientTree.findValue(QStringLiteral("/Sub/A/Device/Bool")))->GetValue());
    EXPECT_TRUE(clientTree.findValue(QStringLiteral("/Sub/A/Device/Number"))->Compare(number));
    EXPECT_TRUE(clientTree.findValue(QStringLiteral("/Sub/A/Device/Mode"))->Compare(selection));
}

TEST_F(Mirror, BringsChangesInTheirOrder)
{
    pair.connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    for (const char *content : {"a", "b", "b", "c"})
        state->SetValue(QLatin1String(content), nullptr);
    pair.carry();
    EXPECT_THAT(diary.contents, ElementsAre("a", "b", "c"));
}

TEST_F(Mirror, BringsAForcedNoticeOfAnEqualContent)
{
    pair.connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    state->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    EXPECT_THAT(diary.codes, ElementsAre(ChangeCodeValue));
}

TEST_F(Mirror, BringsItemsThatComeAndGo)
{
    pair.connect();
    addText(serverTree, QStringLiteral("/K/Device/D1/Admin"), QStringLiteral("X"), QStringLiteral("1"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Admin/X"), QStringLiteral("1"));
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair.carry();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
}

TEST_F(Mirror, KeepsItsOwnTopWhenTheServersGoes)
{
    pair.connect();
    serverTree.removeNode(QStringLiteral("/K"));
    pair.carry();
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"), QStringLiteral("back"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("back"));
}

TEST_F(Mirror, SendsAClientsChangeWithoutAnEcho)
{
    pair.connect();
    Diary serverDiary(state);
    Diary clientDiary(text(clientTree, "/Sub/A/Device/State"));
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.carry();
    EXPECT_THAT(serverDiary.contents, ElementsAre("busy"));
    EXPECT_THAT(clientDiary.contents, ElementsAre("busy"));
}

TEST_F(Mirror, ForwardsAClientsChangeToTheOthers)
{
    Tree otherTree;
    JoinedMirror other(serverTree, otherTree, QStringLiteral("/K"), QStringLiteral("/O"));
    pair.connect();
    other.connect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.carry();
    other.carry();
    EXPECT_EQ(text(otherTree, "/O/Device/State")->GetValue(), QStringLiteral("busy"));
}

TEST_F(Mirror, EndsAsTheServerSaysWhenBothSidesSetAValueAtOnce)
{
    pair.connect();
    state->SetValue(QStringLiteral("server"), nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("client"), nullptr);
    pair.carryToClient(); // older than the client's, which the server will apply next
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("client"));
    pair.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("client"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("client"));
    state->SetValue(QStringLiteral("later"), nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("later"));
}

TEST_F(Mirror, SendsALocalValueOnlyOnceItIsSet)
{
    pair.connect();
    auto *const local = addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Mine"), QString());
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("(absent)"));
    local->SetValue(QStringLiteral("set"), nullptr);
    local->SetValue(QStringLiteral("again"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("again"));
    text(serverTree, "/K/Device/D1/Mine")->SetValue(QStringLiteral("answer"), nullptr);
    pair.carry();
    EXPECT_EQ(local->GetValue(), QStringLiteral("answer"));
    EXPECT_TRUE(pair.serverAccepts);
}

TEST_F(Mirror, LetsTheServersContentWinOverALocalSeed)
{
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QStringLiteral("seed"));
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
}

TEST_F(Mirror, ReplacesALocalValueOfAnotherClass)
{
    addNew<Value<int>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"));
    pair.connect();
    ASSERT_TRUE(text(clientTree, "/Sub/A/Device/State"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
}

TEST_F(Mirror, DoesNotSendItsOwnValue)
{
    auto *const own = addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("ReregisterCorba"), {});
    pair.connect();
    own->SetValue(QStringLiteral("1"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/ReregisterCorba"), QStringLiteral("(absent)"));
}

TEST_F(Mirror, TellsOfItsLossInOrder)
{
    pair.connect();
    auto *const value = text(clientTree, "/Sub/A/Device/State");
    Diary valueDiary(value);
    Diary nodeDiary(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    pair.disconnect();
    EXPECT_EQ(value->GetState(), ValueStateConnectionLost);
    EXPECT_THAT(valueDiary.codes, ElementsAre(ChangeCodeState, ChangeCodeDeleted));
    EXPECT_THAT(nodeDiary.codes, ElementsAre(ChangeCodeDeleted));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
}

TEST_F(Mirror, IsAsTheServerSaysAfterAReconnection)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Old"), QStringLiteral("x"));
    pair.connect();
    pair.disconnect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("in vain"), nullptr);
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    addText(serverTree, QStringLiteral("/K/Device/D2"), QStringLiteral("New"), QStringLiteral("y"));
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_EQ(at("/Sub/A/Device/D2/New"), QStringLiteral("y"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
}

TEST_F(Mirror, HearsOfTheServersChangesAfterItsOwnInEachSession)
{
    for (const QString &session : {QStringLiteral("first"), QStringLiteral("second")}) {
        pair.connect();
        text(clientTree, "/Sub/A/Device/State")->SetValue(session, nullptr);
        pair.carry();
        addText(serverTree, QStringLiteral("/K/Device"), session, QString());
        pair.carry();
        state->SetValue(session + u'!', nullptr);
        pair.carry();
        EXPECT_EQ(at("/Sub/A/Device/State"), session + u'!');
        pair.disconnect();
    }
}

TEST_F(Mirror, AsksForASnapshotWhenABatchIsMissing)
{
    pair.connect();
    state->SetValue(QStringLiteral("lost"), nullptr);
    pair.session->flush();
    pair.toClient.clear();
    state->SetValue(QStringLiteral("arrives"), nullptr);
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Missing);
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    pair.session->sendSnapshot();
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("arrives"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
}

TEST_F(Mirror, AppliesABatchThatComesTwiceOnce)
{
    pair.connect();
    Diary diary(state);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.client.flush();
    pair.toServer.push_back(pair.toServer.front());
    pair.carryToServer();
    EXPECT_TRUE(pair.serverAccepts);
    EXPECT_EQ(diary.codes.size(), 1u);
}

TEST_F(Mirror, RefusesAClientsBatchWhenOneBeforeItIsMissing)
{
    pair.connect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("1"), nullptr);
    pair.client.flush();
    pair.toServer.clear();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("2"), nullptr);
    pair.carryToServer();
    EXPECT_FALSE(pair.serverAccepts);
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
}

TEST_F(Mirror, CutsALargeSnapshotIntoBatches)
{
    for (int i = 0; i < 5000; ++i)
        addText(serverTree, QStringLiteral("/K/Device/Many"), QString::number(i), QString(100, u'x'));
    pair.connect();
    EXPECT_EQ(clientTree.subtree(QStringLiteral("/Sub/A/Device/Many")).size(), 5001u);
}

TEST_F(Mirror, OfANodeThatIsNotThereYetIsEmptyUntilItComes)
{
    JoinedMirror early(serverTree, clientTree, QStringLiteral("/Later"), QStringLiteral("/L"));
    early.connect();
    EXPECT_EQ(early.outcome, MirrorClient::Outcome::SnapshotComplete);
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/L")));
    addText(serverTree, QStringLiteral("/Later"), QStringLiteral("X"), QStringLiteral("1"));
    early.carry();
    EXPECT_EQ(at("/L/X"), QStringLiteral("1"));
}

TEST_F(Mirror, LeavesTheValueOfItsOwnPathAlone)
{
    addText(clientTree, QStringLiteral("/Sub/A"), QStringLiteral("Device"), QStringLiteral("D1"));
    pair.connect();
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair.carry();
    pair.disconnect();
    EXPECT_EQ(at("/Sub/A/Device"), QStringLiteral("D1"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device")->GetState(), ValueStateValid);
}

class Thrower : public IObserver
{
public:
    void Update(Observable *, TChangeCode) override { throw std::runtime_error("an observer's trouble"); }
};

TEST_F(Mirror, EndsWhenAnObserverHereThrows)
{
    pair.connect();
    Thrower thrower;
    text(clientTree, "/Sub/A/Device/State")->AddObserver(&thrower);
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Malformed);
    text(clientTree, "/Sub/A/Device/State")->DeleteObserver(&thrower);
    pair.disconnect();
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("busy"));
}

TEST_F(Mirror, TellsEveryoneOfItsLossWhenAnObserverThrows)
{
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Z"), QString());
    pair.connect();
    Thrower thrower;
    text(clientTree, "/Sub/A/Device/State")->AddObserver(&thrower);
    Diary after(text(clientTree, "/Sub/A/Device/Z"));
    pair.disconnect();
    EXPECT_THAT(after.codes, ElementsAre(ChangeCodeState, ChangeCodeDeleted));
    text(clientTree, "/Sub/A/Device/State")->DeleteObserver(&thrower);
}

TEST_F(Mirror, EndsWhenAnObserverAtTheServerThrows)
{
    pair.connect();
    Thrower thrower;
    state->AddObserver(&thrower);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.carryToServer();
    EXPECT_FALSE(pair.serverAccepts);
    state->DeleteObserver(&thrower);
}

/// Every byte of a real batch cut off, and every byte changed: refused or harmless, never a crash.
TEST_F(Mirror, SurvivesDamagedBatches)
{
    addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Mode"));
    pair.session = std::make_unique<mirror::MirrorSession>(
        serverTree, pair.serverPath, pair.timing,
        [&](quint64, std::string bytes, bool) { pair.toClient.push_back(std::move(bytes)); }, [] {});
    pair.session->sendSnapshot();
    const std::string whole = pair.toClient.front();
    int refused = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        pair.client.begin();
        refused += pair.client.receive(std::string_view(whole).substr(0, i)) == MirrorClient::Outcome::Malformed;
        std::string damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x5a);
        pair.client.begin();
        pair.client.receive(damaged);
        Tree fresh;
        mirror::MirrorSession server(
            fresh, QStringLiteral("/K"), pair.timing, [](quint64, std::string, bool) {}, [] {});
        server.receive(damaged);
    }
    EXPECT_GT(refused, static_cast<int>(whole.size()) / 2);
    pair.client.begin();
    EXPECT_EQ(pair.client.receive(whole), MirrorClient::Outcome::SnapshotComplete);
}
} // namespace
