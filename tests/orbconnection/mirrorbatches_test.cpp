#include "tests/orbconnection/joinedmirror.h"
#include "tests/orbconnection/observers.h"

using namespace values;
using mirror::MirrorClient;

namespace
{
class MirroredBatch : public JoinedTrees
{
};

TEST_F(MirroredBatch, EndsAsTheServerSaysWhenBothSidesSetAValueAtOnce)
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

TEST_F(MirroredBatch, DoesNotSendItsOwnValue)
{
    auto *const own = addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("ReregisterCorba"), {});
    pair.connect();
    own->SetValue(QStringLiteral("1"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/ReregisterCorba"), QStringLiteral("(absent)"));
}

TEST_F(MirroredBatch, LeavesItsOwnValueAloneWhateverTheServerHasThere)
{
    auto *const own = addNew<Value<bool>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("ReregisterCorba"));
    TextValue *const server =
        addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("ReregisterCorba"), QStringLiteral("x"));
    pair.connect();
    own->SetValue(true, nullptr);
    own->HasChanged(ChangeCodeValue, nullptr);
    server->SetValue(QStringLiteral("y"), nullptr);
    pair.carry();
    EXPECT_EQ(clientTree.findValue(QStringLiteral("/Sub/A/Device/ReregisterCorba")), own);
    EXPECT_TRUE(own->GetValue());
    EXPECT_EQ(server->GetValue(), QStringLiteral("y"));
    serverTree.removeValue(QStringLiteral("/K/Device/ReregisterCorba"));
    pair.carry();
    pair.disconnect();
    EXPECT_EQ(own->GetState(), ValueStateValid);
    pair.connect();
    EXPECT_EQ(clientTree.findValue(QStringLiteral("/Sub/A/Device/ReregisterCorba")), own);
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/ReregisterCorba"));
    pair.client.flush();
    EXPECT_TRUE(pair.toServer.empty());
}

TEST_F(MirroredBatch, AsksForASnapshotWhenABatchIsMissing)
{
    pair.connect();
    state->SetValue(QStringLiteral("lost"), nullptr);
    pair.session->flush();
    pair.toClient.clear();
    state->SetValue(QStringLiteral("arrives"), nullptr);
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Missing);
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("idle"));
    pair.session->startOver();
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("arrives"));
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateValid);
}

TEST_F(MirroredBatch, IsToldEverythingAgainEachTimeInOneSession)
{
    pair.connect();
    for (const char *content : {"first", "second", "third"}) {
        addText(serverTree, QStringLiteral("/K/Device"), QLatin1String(content), QString());
        pair.session->flush();
        pair.toClient.clear();
        state->SetValue(QLatin1String(content), nullptr);
        pair.carryToClient();
        EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Missing);
        text(clientTree, "/Sub/A/Device/State")->SetState(ValueStateSeeded, nullptr);
        pair.session->startOver();
        pair.carry();
        EXPECT_EQ(at("/Sub/A/Device/State"), QLatin1String(content));
        expectEqualTrees();
        state->SetState(ValueStateValid, nullptr);
        pair.carry();
        expectEqualTrees();
    }
}

TEST_F(MirroredBatch, AppliesABatchThatComesTwiceOnce)
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

TEST_F(MirroredBatch, RefusesAClientsBatchWhenOneBeforeItIsMissing)
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

TEST_F(MirroredBatch, GoesOnWhenAnObserverHereThrows)
{
    auto *const other = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Other"), QString());
    pair.connect();
    Thrower thrower;
    text(clientTree, "/Sub/A/Device/State")->AddObserver(&thrower);
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    state->SetValue(QStringLiteral("busy"), nullptr);
    other->SetValue(QStringLiteral("after it"), nullptr);
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Applied);
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("busy"));
    EXPECT_EQ(at("/Sub/A/Device/Other"), QStringLiteral("after it"));
    EXPECT_EQ(diary.contents, std::vector<std::string>{"busy"});
    text(clientTree, "/Sub/A/Device/State")->DeleteObserver(&thrower);
}

TEST_F(MirroredBatch, GoesOnWhenAnObserverAtTheServerThrows)
{
    auto *const other = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Other"), QString());
    pair.connect();
    Thrower thrower;
    state->AddObserver(&thrower);
    Diary diary(state);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    text(clientTree, "/Sub/A/Device/Other")->SetValue(QStringLiteral("after it"), nullptr);
    pair.carryToServer();
    EXPECT_TRUE(pair.serverAccepts);
    EXPECT_EQ(other->GetValue(), QStringLiteral("after it"));
    EXPECT_EQ(diary.contents, std::vector<std::string>{"busy"});
    state->DeleteObserver(&thrower);
}

/// Every byte of a real batch cut off, and every byte changed: refused or harmless, never a crash.
TEST_F(MirroredBatch, SurvivesDamagedBatches)
{
    addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Mode"));
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.session->flush();
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
        std::deque<std::string> answers;
        mirror::MirrorSession server(fresh, QStringLiteral("/K"), pair.timing, JoinedMirror::outletTo(answers));
        server.receive(damaged);
    }
    EXPECT_GT(refused, static_cast<int>(whole.size()) / 2);
    pair.client.begin();
    EXPECT_EQ(pair.client.receive(whole), MirrorClient::Outcome::SnapshotComplete);
}
} // namespace
