#include "tests/appruntime/capturedtraces.h"
#include "tests/orbconnection/joinedmirror.h"
#include "tests/orbconnection/observers.h"
#include "valuetreelib/commandframe.h"

#include <gmock/gmock.h>

using namespace values;
using mirror::MirrorClient;
using mirror::Record;
using mirror::RecordKind;
using testing::ElementsAre;

namespace
{
std::string batchOf(quint64 sequence, std::initializer_list<Record> records)
{
    std::string batch;
    mirror::appendHeader(batch, sequence);
    for (const Record &record : records)
        mirror::appendRecord(batch, record);
    return batch;
}

std::string frame(quint8 command, const std::string &payload)
{
    std::string out;
    appendFrame(out, command, [&](std::string &body) { body += payload; });
    return out;
}

std::string textFrame(const char *content)
{
    TextValue value;
    value.SetValue(QLatin1String(content), nullptr);
    return value.GetCommandStringForTransmission();
}

std::string stateFrame(int state)
{
    return frame(SetStateCommand, std::string(1, static_cast<char>(state)));
}

/// What costs itself, and nothing else of its session.
class Trouble : public JoinedTrees
{
protected:
    TextValue *here() const { return text(clientTree, "/Sub/A/Device/State"); }

    const CapturedTraces traces;
};

class TroubleOfAState : public Trouble, public testing::WithParamInterface<int>
{
};

TEST_P(TroubleOfAState, IsCarriedBothWaysUnlessItSaysThatTheValueIsGone)
{
    const auto code = static_cast<TValueState>(GetParam());
    const TValueState expected = code == ValueStateDeleted ? ValueStateValid : code;
    pair.connect();
    state->SetState(code, nullptr);
    pair.carry();
    EXPECT_EQ(here()->GetState(), expected);
    state->SetState(ValueStateValid, nullptr);
    pair.carry();
    here()->SetState(code, nullptr);
    pair.carry();
    EXPECT_EQ(state->GetState(), expected);
}

TEST_P(TroubleOfAState, LeavesClientsConnectedAlsoNewOnes)
{
    pair.connect();
    state->SetState(static_cast<TValueState>(GetParam()), nullptr);
    Tree otherTree;
    JoinedMirror other(serverTree, otherTree, QStringLiteral("/K"), QStringLiteral("/O"));
    other.connect();
    state->SetValue(QStringLiteral("busy"), nullptr);
    pair.carry();
    other.carry();
    EXPECT_TRUE(pair.isConnected());
    EXPECT_TRUE(other.isConnected());
    EXPECT_NE(other.outcome, MirrorClient::Outcome::Malformed);
    EXPECT_EQ(here()->GetValue(), QStringLiteral("busy"));
    EXPECT_EQ(otherTree.findValue(QStringLiteral("/O/Device/State"))->GetStringValue(), QStringLiteral("busy"));
}

INSTANTIATE_TEST_SUITE_P(Codes, TroubleOfAState, testing::Range(0, greatestState + 1),
                         [](const auto &row) { return std::to_string(row.param); });

struct RefusedFrames {
    const char *name;
    std::string frames;
    const char *trace;
};

void PrintTo(const RefusedFrames &row, std::ostream *out)
{
    *out << row.name;
}

class RefusedRecord : public Trouble, public testing::WithParamInterface<RefusedFrames>
{
};

TEST_P(RefusedRecord, OfAClientCostsItself)
{
    pair.connect();
    const std::string good = textFrame("good");
    EXPECT_TRUE(pair.session->receive(
        batchOf(1, {{.kind = RecordKind::Path, .path = "State"},
                    {.kind = RecordKind::Set, .number = 1, .type = 1, .frames = GetParam().frames},
                    {.kind = RecordKind::Set, .number = 1, .type = 1, .frames = good}})));
    EXPECT_EQ(state->GetValue(), QStringLiteral("good"));
    EXPECT_EQ(state->GetState(), ValueStateValid);
    EXPECT_TRUE(traces.contain(GetParam().trace)) << GetParam().trace;
}

TEST_P(RefusedRecord, OfTheServerCostsItself)
{
    pair.client.begin();
    const std::string good = textFrame("good");
    EXPECT_EQ(pair.client.receive(batchOf(
                  1, {{.kind = RecordKind::SnapshotBegin},
                      {.kind = RecordKind::Path, .path = "State"},
                      {.kind = RecordKind::Value, .number = 1, .type = 1, .typeName = "Text", .frames = good},
                      {.kind = RecordKind::Change, .number = 1, .frames = GetParam().frames},
                      {.kind = RecordKind::SnapshotEnd}})),
              MirrorClient::Outcome::SnapshotComplete);
    EXPECT_EQ(here()->GetValue(), QStringLiteral("good"));
    EXPECT_TRUE(traces.contain(GetParam().trace)) << GetParam().trace;
}

INSTANTIATE_TEST_SUITE_P(
    Frames, RefusedRecord,
    testing::Values(RefusedFrames{"OfAnotherClass", frame(SetBoolCommand, "\1"), "command 2 is malformed or of another"},
                    RefusedFrames{"WithTooMuch", frame(SetStateCommand, "ab"), "command 8 is malformed or of another"},
                    RefusedFrames{"ThatSaysItIsGone", stateFrame(1), "command 8 is malformed or of another class"},
                    RefusedFrames{"OfAStateTooGreat", stateFrame(16), "command 8 is malformed or of another class"},
                    RefusedFrames{"CutShort", "\x09\1", "is incomplete"}),
    [](const auto &row) { return row.param.name; });

TEST_F(Trouble, AFrameThatIsRefusedCostsNoOtherOfItsRecord)
{
    pair.connect();
    const std::string frames = frame(SetBoolCommand, "\1") + textFrame("good");
    EXPECT_TRUE(pair.session->receive(batchOf(1, {{.kind = RecordKind::Path, .path = "State"},
                                                  {.kind = RecordKind::Set, .number = 1, .type = 1, .frames = frames}})));
    EXPECT_EQ(state->GetValue(), QStringLiteral("good"));
}

TEST_F(Trouble, AValueOfAnUnknownClassIsLeftOut)
{
    const std::string good = textFrame("good");
    pair.connect();
    EXPECT_TRUE(pair.session->receive(
        batchOf(1, {{.kind = RecordKind::Path, .path = "X"},
                    {.kind = RecordKind::Value, .number = 1, .type = 999, .typeName = "Odd", .frames = good},
                    {.kind = RecordKind::Path, .path = "Y"},
                    {.kind = RecordKind::Value, .number = 2, .type = 1, .typeName = "Text", .frames = good}})));
    EXPECT_TRUE(traces.contain("/K/Device/X is of a class that is not known here: Odd (999)"));
    EXPECT_EQ(atServer("/K/Device/X"), QStringLiteral("(absent)"));
    EXPECT_EQ(atServer("/K/Device/Y"), QStringLiteral("good"));
}

TEST_F(Trouble, ARecordOfAnotherClassThanTheValueIsPassedOver)
{
    pair.connect();
    const std::string frames = stateFrame(2);
    EXPECT_TRUE(pair.session->receive(batchOf(1, {{.kind = RecordKind::Path, .path = "State"},
                                                  {.kind = RecordKind::Set, .number = 1, .type = 3, .frames = frames}})));
    EXPECT_EQ(state->GetState(), ValueStateValid);
}

TEST_F(Trouble, PathsThatNoTreeHoldsAreNotRemembered)
{
    const std::string good = textFrame("good");
    const std::string tooLong(200000, 'x');
    std::string tooDeep = "x";
    for (int depth = 0; depth < 100000; ++depth)
        tooDeep += "/x";
    std::string batch = batchOf(1, {{.kind = RecordKind::SnapshotBegin}});
    quint32 number = 0;
    for (int times = 0; times < 50; ++times)
        for (const std::string &path : {tooLong, tooDeep}) {
            mirror::appendRecord(batch, {.kind = RecordKind::Path, .path = path});
            mirror::appendRecord(batch, {.kind = RecordKind::Value, .number = ++number, .type = 1, .typeName = "Text",
                                         .frames = good});
        }
    mirror::appendRecord(batch, {.kind = RecordKind::Path, .path = "State"});
    mirror::appendRecord(batch, {.kind = RecordKind::Value, .number = ++number, .type = 1, .typeName = "Text",
                                 .frames = good});
    mirror::appendRecord(batch, {.kind = RecordKind::SnapshotEnd});
    pair.client.begin();
    EXPECT_EQ(pair.client.receive(batch), MirrorClient::Outcome::SnapshotComplete);
    EXPECT_EQ(clientTree.subtree(QStringLiteral("/Sub/A/Device")).size(), 2u);
    EXPECT_TRUE(traces.contain("The server's path is refused: /Sub/A/Device/x"));
}

TEST_F(Trouble, AClientsPathThatNoTreeHoldsCostsItself)
{
    pair.connect();
    const std::string good = textFrame("good");
    const std::string tooLong(200000, 'x');
    EXPECT_TRUE(pair.session->receive(
        batchOf(1, {{.kind = RecordKind::Path, .path = tooLong},
                    {.kind = RecordKind::Value, .number = 1, .type = 1, .typeName = "Text", .frames = good},
                    {.kind = RecordKind::Set, .number = 1, .type = 1, .frames = good},
                    {.kind = RecordKind::ValueGone, .number = 1},
                    {.kind = RecordKind::NodeGone, .number = 1},
                    {.kind = RecordKind::Path, .path = "Y"},
                    {.kind = RecordKind::Value, .number = 2, .type = 1, .typeName = "Text", .frames = good}})));
    EXPECT_EQ(atServer("/K/Device/Y"), QStringLiteral("good"));
    EXPECT_TRUE(traces.contain("A client's path is refused: /K/Device/x"));
    EXPECT_TRUE(pair.session->flush());
}

TEST_F(Trouble, ARecordThatTouchesNothingIsConfirmedAllTheSame)
{
    int flushesWanted = 0;
    mirror::Outlet outlet = JoinedMirror::outletTo(pair.toClient);
    outlet.wantsFlush = [&] { ++flushesWanted; };
    mirror::MirrorSession session(serverTree, pair.serverPath, pair.timing, outlet);
    session.flush();
    flushesWanted = 0;
    const std::string tooLong(200000, 'x');
    EXPECT_TRUE(session.receive(batchOf(1, {{.kind = RecordKind::Path, .path = tooLong},
                                            {.kind = RecordKind::ValueGone, .number = 1}})));
    EXPECT_EQ(flushesWanted, 1);
    session.flush();
    EXPECT_EQ(pair.toClient.back(), batchOf(2, {{.kind = RecordKind::Applied, .count = 2}}));
}

TEST_F(Trouble, ANumberThatNobodyNamedEndsTheSession)
{
    for (const quint32 number : {0u, 2u}) {
        pair.connect();
        EXPECT_FALSE(pair.session->receive(batchOf(1, {{.kind = RecordKind::Path, .path = "State"},
                                                       {.kind = RecordKind::ValueGone, .number = number}})));
        pair.client.begin();
        EXPECT_EQ(pair.client.receive(batchOf(1, {{.kind = RecordKind::SnapshotBegin},
                                                  {.kind = RecordKind::Path, .path = "State"},
                                                  {.kind = RecordKind::ValueGone, .number = number}})),
                  MirrorClient::Outcome::Malformed);
    }
}

TEST_F(Trouble, AServerThatConfirmsMoreThanWasSentIsLeft)
{
    pair.client.begin();
    EXPECT_EQ(pair.client.receive(batchOf(1, {{.kind = RecordKind::SnapshotBegin, .count = 1}})),
              MirrorClient::Outcome::Malformed);
}

TEST_F(Trouble, WhatComesBeforeTheSnapshotEndsTheSession)
{
    pair.client.begin();
    EXPECT_EQ(pair.client.receive(batchOf(1, {{.kind = RecordKind::Applied}})), MirrorClient::Outcome::Malformed);
    EXPECT_TRUE(traces.contain("The server's batch is refused: it comes before the snapshot"));
}

TEST_F(Trouble, WhatAServerHasConfirmedStaysConfirmed)
{
    pair.connect();
    here()->SetValue(QStringLiteral("sent"), nullptr);
    pair.client.flush();
    const std::string busy = textFrame("busy");
    pair.client.receive(batchOf(2, {{.kind = RecordKind::Applied, .count = 2},
                                    {.kind = RecordKind::Applied, .count = 1},
                                    {.kind = RecordKind::Change, .number = 2, .frames = busy}}));
    EXPECT_EQ(here()->GetValue(), QStringLiteral("busy"));
}

TEST_F(Trouble, APathThatIsNamedTwiceIsThatOfOneValue)
{
    pair.client.begin();
    const std::string content = textFrame("busy");
    const Record value{.kind = RecordKind::Value, .number = 1, .type = 1, .typeName = "Text", .frames = content};
    Record again = value;
    again.number = 2;
    pair.client.receive(batchOf(1, {{.kind = RecordKind::SnapshotBegin},
                                    {.kind = RecordKind::Path, .path = "State"},
                                    {.kind = RecordKind::Path, .path = "State"},
                                    value,
                                    again,
                                    {.kind = RecordKind::SnapshotEnd}}));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/State"));
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QStringLiteral("own"));
    pair.client.receive(batchOf(2, {{.kind = RecordKind::ValueGone, .number = 1}}));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("own"));
}

TEST_F(Trouble, AClassIsKnownByItsNameUnderAnotherNumber)
{
    pair.connect();
    int removals = 0;
    const Answer counting(clientTree, "/Sub/A/Device/State", ChangeCodeDeleted, [&] { ++removals; });
    const std::string content = textFrame("busy");
    pair.client.receive(batchOf(2, {{.kind = RecordKind::Value, .number = 2, .type = 4711, .typeName = "Text",
                                     .frames = content}}));
    EXPECT_EQ(removals, 0);
    EXPECT_EQ(here()->GetValue(), QStringLiteral("busy"));
}

TEST_F(Trouble, AValueWhoseContentIsNoneIsLeftOut)
{
    pair.connect();
    const std::string half = textFrame("busy").substr(0, 5);
    pair.client.receive(batchOf(2, {{.kind = RecordKind::Path, .path = "Other"},
                                    {.kind = RecordKind::Value, .number = 3, .type = 1,
                                     .typeName = "Text", .frames = half}}));
    EXPECT_EQ(at("/Sub/A/Device/Other"), QStringLiteral("(absent)"));
    EXPECT_TRUE(pair.session->receive(batchOf(1, {{.kind = RecordKind::Path, .path = "Other"},
                                                  {.kind = RecordKind::Value, .number = 1, .type = 1,
                                                   .typeName = "Text", .frames = half}})));
    EXPECT_EQ(atServer("/K/Device/Other"), QStringLiteral("(absent)"));
}

TEST_F(Trouble, AnObserverThatInsistsOnItsOwnClassKeepsItsValue)
{
    pair.connect();
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("State"));
    int removals = 0;
    const Answer insisting(clientTree, "/Sub/A/Device/State", ChangeCodeDeleted, [&] {
        if (++removals == 1)
            addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QStringLiteral("own"));
    });
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("own"));
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("own"));
}

TEST_F(Trouble, AnEndOfASnapshotThatNobodyBeganEndsTheSession)
{
    pair.connect();
    EXPECT_EQ(pair.client.receive(batchOf(2, {{.kind = RecordKind::SnapshotEnd}})), MirrorClient::Outcome::Malformed);
}

TEST_F(Trouble, ABatchThatIsTooLongIsRefusedByBothSides)
{
    pair.connect();
    std::string batch = batchOf(1, {});
    batch.resize(pair.timing.maximumBatchBytes + 1, '\2');
    EXPECT_FALSE(pair.session->receive(batch));
    EXPECT_EQ(pair.client.receive(batch), MirrorClient::Outcome::Malformed);
    EXPECT_TRUE(traces.contain("A client's batch is refused: it is too long"));
    EXPECT_TRUE(traces.contain("The server's batch is refused: it is too long"));
}

TEST_F(Trouble, AnObserversExceptionCostsNoFrameOfTheServersRecord)
{
    pair.connect();
    const Answer answer(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [] { throw 1; }); // no std::exception
    state->SetValue(QStringLiteral("busy"), nullptr);
    state->SetState(ValueStateSeeded, nullptr);
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateSeeded);
    expectEqualTrees();
    EXPECT_TRUE(traces.contain("An observer is in trouble"));
}

TEST_F(Trouble, AnObserversExceptionCostsNoFrameOfAClientsRecord)
{
    pair.connect();
    const Answer there(serverTree, "/K/Device/State", ChangeCodeValue, [] { throw std::runtime_error("trouble"); });
    here()->SetValue(QStringLiteral("busy"), nullptr);
    here()->SetState(ValueStateSeeded, nullptr);
    pair.carry();
    EXPECT_TRUE(pair.serverAccepts);
    EXPECT_EQ(state->GetValue(), QStringLiteral("busy"));
    EXPECT_EQ(state->GetState(), ValueStateSeeded);
    EXPECT_TRUE(traces.contain("An observer is in trouble: trouble"));
}

TEST_F(Trouble, AnObserversExceptionCostsNoAnnouncementAndNoRemovalOfAClient)
{
    pair.connect();
    Thrower thrower;
    serverTree.findNode(QStringLiteral("/K/Device"))->AddObserver(&thrower);
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"), QStringLiteral("set"))
        ->HasChanged(ChangeCodeValue, nullptr);
    here()->SetValue(QStringLiteral("after it"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("set"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("after it"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    here()->SetValue(QStringLiteral("after that"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
    EXPECT_EQ(state->GetValue(), QStringLiteral("after that"));
    EXPECT_TRUE(traces.contain("An observer is in trouble: an observer's trouble"));
    serverTree.findNode(QStringLiteral("/K/Device"))->DeleteObserver(&thrower);
}

TEST_F(Trouble, AnObserversExceptionCostsNothingOfASnapshot)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QStringLiteral("1"));
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QString());
    const Answer atNode(clientTree, "/Sub/A/Device", ChangeCodeNodeItems, [] { throw std::runtime_error("trouble"); });
    const Answer atValue(clientTree, "/Sub/A/Device/State", ChangeCodeValue, [] { throw std::runtime_error("trouble"); });
    pair.connect();
    EXPECT_TRUE(pair.isConnected());
    expectEqualTrees();
    serverTree.findValue(QStringLiteral("/K/Device/D1/X"))->SetStringValue(QStringLiteral("2"), nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/X"), QStringLiteral("2"));
}

TEST_F(Trouble, AnObserversExceptionCostsNothingOfARemoval)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Y"), QString());
    pair.connect();
    Thrower thrower;
    clientTree.findNode(QStringLiteral("/Sub/A/Device/D1"))->AddObserver(&thrower);
    clientTree.findValue(QStringLiteral("/Sub/A/Device/D1/X"))->AddObserver(&thrower);
    std::vector<int> told;
    const Answer last(clientTree, "/Sub/A/Device/D1/Y", ChangeCodeDeleted, [&] { told.push_back(ChangeCodeDeleted); });
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    EXPECT_THAT(told, ElementsAre(ChangeCodeDeleted));
    EXPECT_TRUE(pair.isConnected());
    expectEqualTrees();
}

TEST_F(Trouble, AnObserverOfTheLossThatThrowsLeavesTheWayBack)
{
    pair.connect();
    Thrower thrower;
    here()->AddObserver(&thrower);
    pair.disconnect();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    pair.connect();
    EXPECT_TRUE(pair.isConnected());
    EXPECT_EQ(here()->GetState(), ValueStateValid);
    here()->DeleteObserver(&thrower);
}

/// A content that no batch has room for.
class TooLarge : public Trouble
{
protected:
    TooLarge() { pair.timing.maximumBatchBytes = 1000; }
    void setTooLarge(TextValue *value) { value->SetValue(QString(5000, u'x'), nullptr); }
    void expectItFitsAgain()
    {
        state->SetValue(QStringLiteral("fits"), nullptr);
        pair.carry();
        EXPECT_EQ(here()->GetState(), ValueStateValid);
        EXPECT_EQ(here()->GetValue(), QStringLiteral("fits"));
        EXPECT_TRUE(traces.contain("The content of /K/Device/State is too large for a client"));
        expectEqualTrees();
    }
};

TEST_F(TooLarge, ShowsInTheStateUntilItFitsAgain)
{
    pair.connect();
    setTooLarge(state);
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    state->SetState(ValueStateSeeded, nullptr); // does not make the old content a good one
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    state->HasChanged(ChangeCodeState, nullptr);
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    state->SetState(ValueStateValid, nullptr);
    expectItFitsAgain();
}

TEST_F(TooLarge, ShowsInASnapshot)
{
    setTooLarge(state);
    pair.connect();
    EXPECT_TRUE(pair.isConnected());
    ASSERT_TRUE(here());
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    expectItFitsAgain();
}

TEST_F(TooLarge, ShowsInAForcedChange)
{
    pair.connect();
    setTooLarge(state);
    pair.carry();
    state->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    Diary diary(here());
    state->HasChanged(ChangeCodeValue, nullptr);
    expectItFitsAgain();
    EXPECT_THAT(diary.codes, testing::Contains(ChangeCodeValue));
}

TEST_F(TooLarge, ShowsInAValueThatIsNotOptimised)
{
    state->setOptimized(false);
    pair.connect();
    setTooLarge(state);
    pair.carry();
    EXPECT_EQ(here()->GetState(), ValueStateConnectionLost);
    expectItFitsAgain();
    Diary diary(here());
    for (const char *content : {"a", "b"})
        state->SetValue(QLatin1String(content), nullptr);
    pair.carry();
    EXPECT_THAT(diary.contents, ElementsAre("a", "b")); // one by one again
}

TEST_F(TooLarge, EndsWhenTheClientSetsAnother)
{
    pair.connect();
    setTooLarge(state);
    pair.carry();
    here()->SetValue(QStringLiteral("mine"), nullptr);
    pair.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("mine"));
    EXPECT_EQ(here()->GetState(), ValueStateValid);
    expectEqualTrees();
}

TEST_F(TooLarge, OfAClientIsTracedAndLeavesTheServerAsItIs)
{
    MirrorTiming small;
    small.maximumBatchBytes = 1000;
    Tree otherTree;
    JoinedMirror other(serverTree, otherTree, QStringLiteral("/K/Device"), QStringLiteral("/O"), small);
    other.connect();
    TextValue *const announced = addText(otherTree, QStringLiteral("/O"), QStringLiteral("Mine"), QString());
    other.client.flush();
    for (TextValue *value : {text(otherTree, "/O/State"), announced})
        setTooLarge(value);
    other.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("idle"));
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
    EXPECT_TRUE(traces.contain("The content of /O/State is too large for the server"));
    EXPECT_TRUE(traces.contain("The content of /O/Mine is too large for the server"));
    state->SetValue(QStringLiteral("server's"), nullptr);
    other.carry();
    EXPECT_EQ(text(otherTree, "/O/State")->GetValue(), QStringLiteral("server's"));
    for (TextValue *value : {text(otherTree, "/O/State"), announced})
        value->SetValue(QStringLiteral("fits"), nullptr);
    other.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("fits"));
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("fits"));
}
} // namespace
