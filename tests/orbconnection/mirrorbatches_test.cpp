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

TEST_F(MirroredBatch, BringsChangesInTheOrderInWhichTheyWereMadeLast)
{
    TextValue *const other = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Other"), QString());
    pair.connect();
    std::vector<std::string> told;
    const Answer ofState(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [&] { told.push_back("State"); });
    const Answer ofOther(clientTree, "/Sub/A/Device/Other", ChangeCodeValue, [&] { told.push_back("Other"); });
    state->SetValue(QStringLiteral("1"), nullptr);
    other->SetValue(QStringLiteral("2"), nullptr);
    state->SetValue(QStringLiteral("3"), nullptr);
    pair.carry();
    EXPECT_EQ(told, (std::vector<std::string>{"Other", "State"}));
}

TEST_F(MirroredBatch, IsNotWrittenForAClientThatHasLetGoOfTheTree)
{
    int flushesWanted = 0;
    mirror::Outlet outlet = JoinedMirror::outletTo(pair.toServer);
    outlet.wantsFlush = [&] { ++flushesWanted; };
    MirrorClient client(clientTree, QStringLiteral("/Sub/A/Device"), QString(), pair.timing, outlet);
    client.begin();
    client.detach();
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"), QString());
    EXPECT_EQ(flushesWanted, 0);
}

TEST_F(MirroredBatch, DoesNotSendItsOwnValue)
{
    auto *const own = addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("ReregisterCorba"), {});
    pair.connect();
    own->SetValue(QStringLiteral("1"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/ReregisterCorba"), QStringLiteral("(absent)"));
}

TEST_F(MirroredBatch, DoesNotSendItsOwnValueWhenAClientOfThisProcessMakesIt)
{
    pair.connect();
    mirror::ClientOriginator hand;
    clientTree.addValueAt(QStringLiteral("/Sub/A/Device/ReregisterCorba"), std::make_unique<Value<bool>>(), &hand);
    pair.client.flush();
    EXPECT_TRUE(pair.toServer.empty());
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

TEST_F(MirroredBatch, BelongsToTheLastSnapshotThatWasBegun)
{
    for (int i = 0; i < 100; ++i)
        addText(serverTree, QStringLiteral("/K/Device"), QString::number(i), QString(100, u'x'));
    pair.connect();
    const ValueBase *const last = clientTree.findValue(QStringLiteral("/Sub/A/Device/99"));
    pair.timing.windowBytes = 1000;
    pair.timing.batchBytes = 300;
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.client.begin();
    EXPECT_FALSE(pair.session->flush()); // half of it
    pair.session->startOver();
    serverTree.removeValue(QStringLiteral("/K/Device/50"));
    pair.session->startOver();
    pair.carry();
    EXPECT_TRUE(pair.client.isSettled());
    EXPECT_EQ(clientTree.findValue(QStringLiteral("/Sub/A/Device/99")), last); // named before the end mark
    expectEqualTrees();
    EXPECT_TRUE(pair.session->flush());
}

/// What waits for the client, in bytes.
std::size_t waitingIn(const std::deque<std::string> &batches)
{
    return JoinedMirror::outletTo(const_cast<std::deque<std::string> &>(batches)).waiting();
}

TEST_F(MirroredBatch, OfASnapshotWaitsForRoomAlsoWhenValuesChangeThatAreNotOptimised)
{
    for (int i = 0; i < 1000; ++i)
        addText(serverTree, QStringLiteral("/K/Device"), QString::number(i), QString(100, u'x'));
    state->setOptimized(false);
    pair.timing.windowBytes = 1000;
    pair.timing.batchBytes = 300;
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.client.begin();
    EXPECT_FALSE(pair.session->flush());
    state->SetValue(QStringLiteral("busy"), nullptr);
    EXPECT_LT(waitingIn(pair.toClient), 2000u);
    pair.carry();
    expectEqualTrees();
}

TEST_F(MirroredBatch, OfAValueThatIsNotOptimisedIsMergedWhenTheClientIsFarBehind)
{
    state->setOptimized(false);
    pair.timing.queueBytes = 3000;
    pair.timing.batchBytes = 300;
    pair.connect();
    for (int i = 0; i < 1000; ++i)
        state->SetValue(QString::number(i), nullptr);
    EXPECT_LT(waitingIn(pair.toClient), 4000u);
    EXPECT_GT(waitingIn(pair.toClient), 2000u);
    pair.carry();
    expectEqualTrees();
}

TEST_F(MirroredBatch, BringsArgumentsBeforeTheCommandThatIsNotOptimised)
{
    auto *const command = addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Command"));
    command->setOptimized(false);
    pair.connect();
    auto *const there = clientTree.findValue(QStringLiteral("/Sub/A/Device/Command"));
    there->setOptimized(false);
    std::vector<QString> seen;
    const auto note = [&](const QString &argument) { seen.push_back(argument); };
    const Answer atClient(clientTree, "/Sub/A/Device/Command", ChangeCodeValue,
                          [&] { note(at("/Sub/A/Device/State")); });
    const Answer atTheServer(serverTree, "/K/Device/Command", ChangeCodeValue, [&] { note(state->GetValue()); });
    for (int i = 1; i <= 2; ++i) {
        state->SetValue(QString::number(i), nullptr);
        command->SetValue(i, nullptr);
    }
    pair.carry();
    EXPECT_EQ(seen, (std::vector<QString>{"1", "2", "1", "2"}));
    seen.clear();
    for (int i = 3; i <= 4; ++i) {
        text(clientTree, "/Sub/A/Device/State")->SetValue(QString::number(i), nullptr);
        there->SetStringValue(QString::number(i), nullptr);
    }
    pair.carry();
    EXPECT_EQ(seen, (std::vector<QString>{"3", "4", "3", "4"}));
}

TEST_F(MirroredBatch, BringsNoLongContentBackToWhoHasSetIt)
{
    pair.connect();
    const auto client = [this] { return text(clientTree, "/Sub/A/Device/State"); };
    client()->SetValue(QString(10000, u'x'), nullptr);
    pair.carryToServer();
    ASSERT_EQ(state->GetValue().size(), 10000);
    pair.session->flush();
    EXPECT_LT(waitingIn(pair.toClient), 1000u);
    pair.carry();
    expectEqualTrees();
    const Answer shortening(serverTree, "/K/Device/State", ChangeCodeValue,
                            [this] { state->SetValue(state->GetValue().left(5000), nullptr); });
    client()->SetValue(QString(10000, u'y'), nullptr);
    pair.carry();
    EXPECT_EQ(client()->GetValue().size(), 5000);
    expectEqualTrees();
}

TEST_F(MirroredBatch, TellsTheValueAndTheNodeOfOnePathApart)
{
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("D1"), QString());
    serverTree.addNode(QStringLiteral("/K/Device/D1"));
    pair.connect();
    text(clientTree, "/Sub/A/Device/D1")->SetValue(QStringLiteral("set"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1"), QStringLiteral("set"));
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    expectEqualTrees();
    serverTree.addNode(QStringLiteral("/K/Device/D1"));
    serverTree.removeValue(QStringLiteral("/K/Device/D1"));
    pair.carry();
    expectEqualTrees();
}

TEST_F(MirroredBatch, SaysThatTheRestWaitsUntilTheEndMarkIsWritten)
{
    pair.timing.windowBytes = 1; // one record at a time
    pair.timing.batchBytes = 1;
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.client.begin();
    while (!pair.session->flush())
        for (; !pair.toClient.empty(); pair.toClient.pop_front())
            pair.client.receive(pair.toClient.front());
    for (; !pair.toClient.empty(); pair.toClient.pop_front())
        pair.client.receive(pair.toClient.front());
    EXPECT_TRUE(pair.client.isSettled());
    expectEqualTrees();
}

TEST_F(MirroredBatch, WithTheMarkOfASnapshotBeginsWithIt)
{
    state->setOptimized(false);
    pair.connect();
    state->SetValue(QStringLiteral("lost"), nullptr);
    pair.session->flush();
    pair.toClient.clear();
    state->SetValue(QStringLiteral("gathered"), nullptr);
    pair.session->startOver();
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Applied);
    expectEqualTrees();
}

TEST_F(MirroredBatch, OfASnapshotConfirmsOnceWhatWasApplied)
{
    pair.connect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.carryToServer();
    pair.session->startOver();
    pair.session->flush();
    ASSERT_EQ(pair.toClient.size(), 1u);
    ByteCursor in{pair.toClient.front().data(), pair.toClient.front().data() + pair.toClient.front().size()};
    mirror::readHeader(in);
    std::vector<mirror::RecordKind> kinds;
    while (const auto record = mirror::readRecord(in))
        kinds.push_back(record->kind);
    using enum mirror::RecordKind;
    EXPECT_EQ(kinds, (std::vector{SnapshotBegin, Path, Path, Node, Value, SnapshotEnd}));
}

TEST_F(MirroredBatch, BringsAForcedNoticeBesideTheWholeValue)
{
    pair.connect();
    TextValue *const client = text(clientTree, "/Sub/A/Device/State");
    client->SetValue(QStringLiteral("busy"), nullptr);
    pair.carryToServer();
    state->HasChanged(ChangeCodeValue, nullptr);
    Diary diary(client);
    pair.carryToClient();
    EXPECT_EQ(diary.codes, std::vector<int>{ChangeCodeValue});
}

TEST_F(MirroredBatch, BringsAForcedNoticeOfAValueThatIsNotOptimisedAlsoWithASnapshot)
{
    state->setOptimized(false);
    pair.connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    pair.session->startOver();
    state->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    EXPECT_EQ(diary.codes, std::vector<int>{ChangeCodeValue});
}

TEST_F(MirroredBatch, BringsAForcedNoticeOfAClientToEverybody)
{
    Tree otherTree;
    JoinedMirror other(serverTree, otherTree, QStringLiteral("/K/Device"), QStringLiteral("/O"));
    pair.connect();
    other.connect();
    Diary diary(state);
    Diary diaryOfOther(text(otherTree, "/O/State"));
    Diary ownDiary(text(clientTree, "/Sub/A/Device/State"));
    text(clientTree, "/Sub/A/Device/State")->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    other.carry();
    for (const Diary *told : {&diary, &diaryOfOther, &ownDiary})
        EXPECT_EQ(told->codes, std::vector<int>{ChangeCodeValue});
}

TEST_F(MirroredBatch, IsPassedOverWhileAWrittenRecordIsNotConfirmed)
{
    pair.connect();
    state->SetValue(QStringLiteral("server"), nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("client"), nullptr);
    pair.client.flush(); // on its way
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("client"));
    pair.carry();
    expectEqualTrees();
}

TEST_F(MirroredBatch, IsAppliedOnceByTheClientToo)
{
    state->setOptimized(false);
    pair.connect();
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair.session->flush();
    pair.toClient.push_back(pair.toClient.front());
    pair.carryToClient();
    EXPECT_EQ(pair.outcome, MirrorClient::Outcome::Repeated);
}

TEST_F(MirroredBatch, EndsWithTheSessionThatAnObserverEnds)
{
    TextValue *const other = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Other"), QString());
    pair.connect();
    const Answer ending(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [this] { pair.client.lose(); });
    state->SetValue(QStringLiteral("busy"), nullptr);
    other->SetValue(QStringLiteral("after it"), nullptr);
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/Other"), QString());
}

TEST_F(MirroredBatch, EndsWithinTheRecordWhoseObserverEndsTheSession)
{
    pair.connect();
    const Answer ending(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [this] { pair.client.lose(); });
    state->SetValue(QStringLiteral("busy"), nullptr);
    state->SetState(ValueStateSeeded, nullptr);
    pair.carryToClient();
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateConnectionLost);
}

TEST_F(MirroredBatch, AddsNothingAfterTheSessionThatAnObserverEnds)
{
    pair.connect();
    const Answer ending(clientTree, "/Sub/A/Device/State", ChangeCodeDeleted, [this] { pair.client.lose(); });
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"));
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
}

TEST_F(MirroredBatch, AsksForASnapshotWhenAnObserverHasLetNewerOnesIn)
{
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Z"), QString());
    pair.connect();
    for (const char *content : {"older", "newer"}) {
        state->SetValue(QLatin1String(content), nullptr);
        text(serverTree, "/K/Device/Z")->SetValue(QLatin1String(content), nullptr);
        pair.session->flush();
    }
    std::vector<std::string> batches(pair.toClient.begin(), pair.toClient.end());
    pair.toClient.clear();
    ASSERT_EQ(batches.size(), 2u);
    // As an observer does that runs an event loop.
    const Answer answer(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [&] {
        if (at("/Sub/A/Device/State") == QLatin1String("older"))
            pair.client.receive(batches[1]);
    });
    EXPECT_EQ(pair.client.receive(batches[0]), MirrorClient::Outcome::Missing);
    EXPECT_EQ(at("/Sub/A/Device/Z"), QStringLiteral("newer"));
    pair.session->startOver();
    pair.carry();
    expectEqualTrees();
}

TEST_F(MirroredBatch, OfASessionBeforeIsLeftWhenAnObserverHasLetAnotherBegin)
{
    pair.connect();
    const Answer answer(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [this] {
        if (at("/Sub/A/Device/State") == QLatin1String("older"))
            return;
        state->SetValue(QStringLiteral("older"), nullptr);
        pair.disconnect();
        pair.client.begin();
        pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                               JoinedMirror::outletTo(pair.toClient));
    });
    state->SetValue(QStringLiteral("busy"), nullptr);
    state->SetState(ValueStateSeeded, nullptr);
    pair.session->flush();
    const std::string batch = std::exchange(pair.toClient, {}).front();
    EXPECT_EQ(pair.client.receive(batch), MirrorClient::Outcome::Missing);
    EXPECT_EQ(text(clientTree, "/Sub/A/Device/State")->GetState(), ValueStateConnectionLost);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("older"));
    expectEqualTrees();
}

TEST_F(MirroredBatch, IsNotWrittenAfterTheLoss)
{
    pair.connect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("busy"), nullptr);
    pair.disconnect();
    pair.client.flush();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("in vain"), nullptr);
    pair.client.flush();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/State"));
    pair.client.flush();
    EXPECT_TRUE(pair.toServer.empty());
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

TEST_F(MirroredBatch, GathersEachChangeThatWaitsForRoom)
{
    state->setOptimized(false);
    pair.timing.windowBytes = 1;
    pair.connect();
    Diary diary(text(clientTree, "/Sub/A/Device/State"));
    for (const char *content : {"1", "2", "3"}) {
        state->SetValue(QLatin1String(content), nullptr);
        pair.session->flush();
    }
    EXPECT_EQ(pair.toClient.size(), 1u);
    pair.carry();
    EXPECT_EQ(diary.codes.size(), 3u);
}

TEST_F(MirroredBatch, OfAClientMakesNoValueBesideTheMirroredNode)
{
    pair.connect();
    std::string batch;
    mirror::appendHeader(batch, 1);
    mirror::appendRecord(batch, {.kind = mirror::RecordKind::Path, .path = ""});
    mirror::appendRecord(batch, {.kind = mirror::RecordKind::Value, .number = 1, .type = ValueTypeText});
    EXPECT_TRUE(pair.session->receive(batch));
    EXPECT_FALSE(serverTree.findValue(QStringLiteral("/K/Device")));
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
