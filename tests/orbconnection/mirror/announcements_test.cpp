#include "tests/orbconnection/joinedmirror.h"
#include "tests/orbconnection/observers.h"

#include <gmock/gmock.h>

using namespace values;
using testing::ElementsAre;

namespace
{
/// What a client makes, and what it removes.
class Announcement : public JoinedTrees
{
protected:
    Announcement() { pair.connect(); }

    /// A text of the client's own, whose time of being seeded is over.
    TextValue *addOwn(const char *name)
    {
        TextValue *const own = addText(clientTree, QStringLiteral("/Sub/A/Device"), QLatin1String(name), QString());
        pair.client.flush();
        return own;
    }
    void announce(const char *name, const QString &content)
    {
        addOwn(name)->SetValue(content, nullptr);
        pair.carry();
    }
    /// Whether the client has something to tell.
    bool tellsServer()
    {
        pair.client.flush();
        return !pair.toServer.empty();
    }
};

TEST_F(Announcement, IsNotMadeByAnEqualContent)
{
    TextValue *const own = addOwn("Mine");
    own->SetValue(QString(), nullptr);
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("idle"), nullptr);
    EXPECT_FALSE(tellsServer());
}

TEST_F(Announcement, IsMadeByAForcedChangeAlsoOfASeed)
{
    addOwn("Mine")->HasChanged(ChangeCodeValue, nullptr);
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Seed"), QStringLiteral("x"))
        ->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QString());
    EXPECT_EQ(atServer("/K/Device/Seed"), QStringLiteral("x"));
}

TEST_F(Announcement, IsNotMadeBySeeds)
{
    addNew<TextValue>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"));
    text(clientTree, "/Sub/A/Device/Mine")->SetValue(QStringLiteral("one"), nullptr);
    text(clientTree, "/Sub/A/Device/Mine")->SetState(ValueStateSeeded, nullptr);
    EXPECT_FALSE(tellsServer());
    text(clientTree, "/Sub/A/Device/Mine")->SetValue(QStringLiteral("two"), nullptr);
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("two"));
    expectEqualTrees();
}

TEST_F(Announcement, IsMadeByWhatWasSetBeforeTheSnapshot)
{
    pair.disconnect();
    TextValue *const own = addOwn("Mine");
    addOwn("Unset");
    own->SetValue(QStringLiteral("set"), nullptr);
    addOwn("Gone")->SetValue(QStringLiteral("x"), nullptr);
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Gone"));
    addOwn("Gone"); // another one
    pair.connect();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("set"));
    EXPECT_EQ(atServer("/K/Device/Unset"), QStringLiteral("(absent)"));
    EXPECT_EQ(atServer("/K/Device/Gone"), QStringLiteral("(absent)"));
}

TEST_F(Announcement, IsNotMadeOfWhatTheSnapshotBrings)
{
    pair.disconnect();
    addOwn("New")->SetValue(QStringLiteral("mine"), nullptr);
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("New"), QStringLiteral("server's"));
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/New"), QStringLiteral("server's"));
    expectEqualTrees();
}

TEST_F(Announcement, IsNotMadeOfTheServersValuesThatWereSetBetweenSessions)
{
    pair.disconnect();
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("in vain"), nullptr);
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair.connect();
    EXPECT_EQ(atServer("/K/Device/State"), QStringLiteral("(absent)"));
    expectEqualTrees();
}

TEST_F(Announcement, IsNotMadeByANoticeThatTheValueGoes)
{
    addOwn("Mine")->NotifyObservers(ChangeCodeDeleted, nullptr);
    EXPECT_FALSE(tellsServer());
}

TEST_F(Announcement, IsNeededForWhatIsMadeAnewBetweenSessions)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    pair.carry();
    pair.disconnect();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    clientTree.removeNode(QStringLiteral("/Sub/A/Device/D1"));
    addText(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("X"), QStringLiteral("own"));
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/D1/X"), QStringLiteral("own"));
    EXPECT_EQ(atServer("/K/Device/D1/X"), QStringLiteral("(absent)"));
}

TEST_F(Announcement, IsNeededForWhatIsMadeAnewDuringASnapshot)
{
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Gone"), QString());
    pair.carry();
    pair.disconnect();
    serverTree.removeValue(QStringLiteral("/K/Device/Gone"));
    pair.client.begin();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Gone"));
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Gone"), QStringLiteral("own"));
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Gone"), QStringLiteral("own"));
    EXPECT_EQ(atServer("/K/Device/Gone"), QStringLiteral("(absent)"));
}

TEST_F(Announcement, OfWhatIsSetDuringASnapshotGoesAtOnceForAPathThatHasBeenNamed)
{
    pair.disconnect();
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Later"), QString(2000, u'x'));
    pair.timing.batchBytes = 64; // several batches
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.client.begin();
    pair.session->flush();
    ASSERT_GE(pair.toClient.size(), 2u);
    while (!pair.toClient.empty() && text(clientTree, "/Sub/A/Device/State")->GetState() != ValueStateValid) {
        pair.client.receive(pair.toClient.front());
        pair.toClient.pop_front();
    }
    ASSERT_FALSE(pair.client.isComplete());
    text(clientTree, "/Sub/A/Device/State")->SetValue(QStringLiteral("early"), nullptr);
    pair.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("early"));
    expectEqualTrees();
}

TEST_F(Announcement, LeavesTheContentOfAValueThatItMeets)
{
    auto *const met = addNew<ValueNumeric<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("N"));
    met->SetMinMax(1, 9, 2, nullptr);
    met->SetValue(5, nullptr);
    auto *const own = addNew<ValueNumeric<int>>(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("N"));
    own->SetValue(3, nullptr);
    pair.client.flush();
    own->SetState(ValueStateSeeded, nullptr);
    pair.carry();
    EXPECT_EQ(met->GetValue(), 5);
    EXPECT_EQ(met->min(), 1);
    EXPECT_EQ(met->GetState(), ValueStateSeeded);
    expectEqualTrees();
}

TEST_F(Announcement, BringsOnlyTheLastChangesToAValueThatItMeetsAndEachOfOneThatIsNotOptimised)
{
    TextValue *const met = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("N"), QStringLiteral("x"));
    Diary diary(met);
    TextValue *const own = addOwn("N");
    own->setOptimized(false);
    for (const char *content : {"a", "b", "c"})
        own->SetValue(QLatin1String(content), nullptr);
    pair.carry();
    EXPECT_THAT(diary.contents, ElementsAre("a", "b", "c"));
    expectEqualTrees();
}

TEST_F(Announcement, IsTakenBackWithTheValue)
{
    announce("Mine", QStringLiteral("set"));
    ASSERT_EQ(atServer("/K/Device/Mine"), QStringLiteral("set"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
    expectEqualTrees();
}

TEST_F(Announcement, IsTakenBackBeforeItWasSent)
{
    addOwn("Mine")->SetValue(QStringLiteral("set"), nullptr);
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
    EXPECT_TRUE(pair.serverAccepts);
    announce("Mine", QStringLiteral("again"));
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("again"));
}

TEST_F(Announcement, IsTakenBackAndMadeAgainAtOnce)
{
    announce("Mine", QStringLiteral("set"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    announce("Mine", QStringLiteral("again"));
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("again"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("(absent)"));
}

TEST_F(Announcement, ThatIsTakenBackAndMadeAgainIsToldInThisOrder)
{
    announce("Mine", QStringLiteral("one"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"), QStringLiteral("two"))
        ->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("two"));
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("two"));
}

TEST_F(Announcement, ThatMeetsAValueDoesNotMakeItTheClients)
{
    TextValue *const own = addOwn("Both");
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Both"), QStringLiteral("server"));
    own->SetValue(QStringLiteral("client"), nullptr);
    pair.carry();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Both"));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Both"), QStringLiteral("client"));
    expectEqualTrees();
}

TEST_F(Announcement, IsNotMadeOfAValueThatTheSnapshotHasBrought)
{
    pair.disconnect();
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Both"), QStringLiteral("server"));
    addOwn("Both")->SetValue(QStringLiteral("client"), nullptr);
    pair.toServer.clear();
    pair.client.begin();
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/Both"), QStringLiteral("server"));
    EXPECT_FALSE(tellsServer());
}

TEST_F(Announcement, ThatWasNeverMadeLeavesTheValueWhateverTheServerMakesAndRemovesThere)
{
    addOwn("Mine")->SetState(ValueStateValid, nullptr);
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mine"), QStringLiteral("server"));
    serverTree.removeValue(QStringLiteral("/K/Device/Mine"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QString());
}

TEST_F(Announcement, IsNotNeededToKeepWhatTheClientHasMadeInPlaceOfWhatWasThere)
{
    pair.disconnect();
    serverTree.removeValue(QStringLiteral("/K/Device/State"));
    pair.client.begin();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/State"));
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("State"), QStringLiteral("own"));
    pair.session = std::make_unique<mirror::MirrorSession>(serverTree, pair.serverPath, pair.timing,
                                                           JoinedMirror::outletTo(pair.toClient));
    pair.carryToClient();
    EXPECT_TRUE(pair.client.isComplete());
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("own"));
}

TEST_F(Announcement, ThatWasNeverMadeKeepsItsNodeUntilTheValueGoes)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    int flushesWanted = 0;
    mirror::Outlet outlet = JoinedMirror::outletTo(pair.toServer);
    outlet.wantsFlush = [&] { ++flushesWanted; };
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), pair.timing, outlet);
    mirror::MirrorSession session(serverTree, pair.serverPath, pair.timing, JoinedMirror::outletTo(pair.toClient));
    const auto carry = [&] {
        session.flush();
        for (const std::string &batch : std::exchange(pair.toClient, {}))
            client.receive(batch);
        client.flush();
        flushesWanted = 0;
    };
    client.begin();
    carry();
    addText(clientTree, QStringLiteral("/C/D1"), QStringLiteral("Mine"), QString());
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    carry();
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/C/D1")));
    clientTree.removeValue(QStringLiteral("/C/D1/Mine"));
    EXPECT_EQ(flushesWanted, 1);
    client.flush();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/C/D1")));
}

TEST_F(Announcement, OfAnotherSessionIsNotTakenBack)
{
    announce("Mine", QStringLiteral("set"));
    pair.disconnect();
    pair.connect();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("set"));
    expectEqualTrees();
}

TEST_F(Announcement, IsNotTakenBackFromAValueThatTheServerHasMadeInItsPlace)
{
    announce("Mine", QStringLiteral("set"));
    serverTree.removeValue(QStringLiteral("/K/Device/Mine"));
    addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mine"), QStringLiteral("server's"));
    pair.carry();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("server's"));
}

TEST_F(Announcement, IsNotTakenBackFromAValueThatAnObserverHasPutInItsPlace)
{
    const Answer replacing(serverTree, "/K/Device", ChangeCodeChildAdded, [this] {
        if (atServer("/K/Device/Mine") == QLatin1String("set")) {
            serverTree.removeValue(QStringLiteral("/K/Device/Mine"));
            addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Mine"), QStringLiteral("server's"));
        }
    });
    addText(clientTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("Mine"), QStringLiteral("set"))
        ->HasChanged(ChangeCodeState, nullptr);
    pair.carry();
    ASSERT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("server's"));
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/Mine"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("server's"));
    expectEqualTrees();
}

TEST_F(Announcement, OfAnotherClientIsNotTakenBack)
{
    announce("Mine", QStringLiteral("set"));
    Tree otherTree;
    JoinedMirror other(serverTree, otherTree, QStringLiteral("/K/Device"), QStringLiteral("/Other"));
    other.connect();
    otherTree.removeValue(QStringLiteral("/Other/Mine"));
    other.carry();
    EXPECT_EQ(itemsBelow(otherTree, QStringLiteral("/Other")), itemsBelow(serverTree, QStringLiteral("/K/Device")));
}

TEST_F(Announcement, WhatAClientRemovesOfTheServersComesBackWhole)
{
    auto *const number = addNew<ValueNumeric<int>>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("N"));
    number->SetMinMax(1, 9, 2, nullptr);
    auto *const mode = addNew<ValueSelection>(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Mode"));
    mode->setTexts({QStringLiteral("a"), QStringLiteral("b")}, nullptr);
    mode->selectKey(1, nullptr);
    number->SetState(ValueStateSeeded, nullptr);
    serverTree.addNode(QStringLiteral("/K/Device/D1/Empty"));
    pair.carry();
    clientTree.removeNode(QStringLiteral("/Sub/A/Device/D1"));
    pair.carry();
    EXPECT_TRUE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1/Empty")));
    expectEqualTrees();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/D1/N"));
    pair.carry();
    expectEqualTrees();
}

TEST_F(Announcement, WhatASnapshotRemovesIsToldToNobody)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    pair.carry();
    pair.disconnect();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.connect();
    ASSERT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_FALSE(tellsServer());
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    pair.carry();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.session->startOver();
    pair.carryToClient();
    ASSERT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_FALSE(tellsServer());
}

TEST_F(Announcement, WhatGoesWithAServersNodeIsToldToNobody)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("X"), QString());
    pair.carry();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carryToClient();
    ASSERT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1")));
    EXPECT_FALSE(tellsServer());
}

TEST_F(Announcement, TheMirroredPathIsTakenAwayWithoutAWord)
{
    announce("Mine", QStringLiteral("set"));
    pair.client.removeAll();
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device")));
    EXPECT_FALSE(tellsServer());
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("set"));
}

/// A process that mirrors one and serves another.
class ChainOfMirrors : public JoinedTrees
{
protected:
    ChainOfMirrors()
    {
        pair.connect();
        next.connect();
    }
    void carry()
    {
        for (int times = 0; times < 2; ++times) {
            next.carry();
            pair.carry();
        }
        next.carry();
        expectEqualTrees();
        EXPECT_EQ(itemsBelow(lastTree, QStringLiteral("/T")), itemsBelow(clientTree, QStringLiteral("/Sub/A/Device")));
    }
    QString atLast(const char *path) const
    {
        const ValueBase *const value = lastTree.findValue(QLatin1String(path));
        return value ? value->GetStringValue() : QStringLiteral("(absent)");
    }
    void announceAtLast()
    {
        addText(lastTree, QStringLiteral("/T/D1"), QStringLiteral("Mine"), QString());
        next.client.flush();
        text(lastTree, "/T/D1/Mine")->SetValue(QStringLiteral("set"), nullptr);
        carry();
    }

    Tree lastTree;
    JoinedMirror next{clientTree, lastTree, QStringLiteral("/Sub/A/Device"), QStringLiteral("/T")};
};

TEST_F(ChainOfMirrors, PassesChangesOnBothWays)
{
    state->SetValue(QStringLiteral("busy"), nullptr);
    carry();
    EXPECT_EQ(atLast("/T/State"), QStringLiteral("busy"));
    text(lastTree, "/T/State")->SetValue(QStringLiteral("done"), nullptr);
    carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("done"));
}

TEST_F(ChainOfMirrors, PassesAnnouncementsAndRemovalsOn)
{
    announceAtLast();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("set"));
    text(serverTree, "/K/Device/D1/Mine")->SetValue(QStringLiteral("answer"), nullptr);
    carry();
    EXPECT_EQ(atLast("/T/D1/Mine"), QStringLiteral("answer"));
    lastTree.removeValue(QStringLiteral("/T/D1/Mine"));
    carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("(absent)"));
    EXPECT_EQ(at("/Sub/A/Device/D1/Mine"), QStringLiteral("(absent)"));
}

TEST_F(ChainOfMirrors, PassesOnWhatAnAnnouncementMeets)
{
    addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Mine"), QStringLiteral("server's"));
    addText(lastTree, QStringLiteral("/T/D1"), QStringLiteral("Mine"), QString());
    next.client.flush();
    text(lastTree, "/T/D1/Mine")->SetValue(QStringLiteral("set"), nullptr);
    next.carry();
    pair.carryToClient(); // older than what is announced from here
    carry();
    EXPECT_EQ(atLast("/T/D1/Mine"), QStringLiteral("server's"));
}

TEST_F(ChainOfMirrors, PassesOnWhatWasAnnouncedBeforeItsOwnSnapshot)
{
    pair.disconnect();
    addText(lastTree, QStringLiteral("/T/D1"), QStringLiteral("Mine"), QString());
    next.client.flush();
    text(lastTree, "/T/D1/Mine")->SetValue(QStringLiteral("set"), nullptr);
    next.carry();
    ASSERT_EQ(at("/Sub/A/Device/D1/Mine"), QStringLiteral("set"));
    pair.connect();
    carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("set"));
}

TEST_F(ChainOfMirrors, ShowsItsLossAsAStateAndEndsNoSession)
{
    pair.disconnect();
    next.carry();
    EXPECT_TRUE(next.isConnected());
    EXPECT_EQ(text(lastTree, "/T/State")->GetState(), ValueStateConnectionLost);
    EXPECT_EQ(atLast("/T/State"), QStringLiteral("idle"));
    pair.connect();
    carry();
    EXPECT_EQ(text(lastTree, "/T/State")->GetState(), ValueStateValid);
}

TEST_F(ChainOfMirrors, PassesOnThatTheFirstHasTakenSomethingAway)
{
    announceAtLast();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    carry();
    EXPECT_FALSE(lastTree.findNode(QStringLiteral("/T/D1")));
}
} // namespace
