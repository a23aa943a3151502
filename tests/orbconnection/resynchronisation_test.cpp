#include "tests/orbconnection/joinedmirror.h"

namespace
{
/// A client that is told everything again while changes are on their way.
class Resynchronisation : public JoinedTrees
{
protected:
    /// What the client writes before it sees the snapshot that the server has written.
    template <typename Change> void amid(const Change &change)
    {
        pair.session->startOver();
        pair.session->flush();
        change();
        pair.carryToClient();
        pair.carry();
    }
    /// A value of the client's own, whose time of being seeded is over.
    void addLocal(const char *parent, const char *name)
    {
        addText(clientTree, QLatin1String(parent), QLatin1String(name), QString());
        pair.client.flush();
    }
    void set(const char *path, const char *content)
    {
        text(clientTree, path)->SetValue(QLatin1String(content), nullptr);
    }
};

TEST_F(Resynchronisation, KeepsAChangeThatIsOnItsWay)
{
    pair.connect();
    amid([this] { set("/Sub/A/Device/State", "busy"); });
    EXPECT_EQ(state->GetValue(), QStringLiteral("busy"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("busy"));
    set("/Sub/A/Device/State", "done");
    pair.carry();
    EXPECT_EQ(state->GetValue(), QStringLiteral("done"));
}

TEST_F(Resynchronisation, KeepsAValueThatWasAnnouncedMeanwhile)
{
    pair.connect();
    amid([this] {
        addLocal("/Sub/A/Device/D1", "Mine");
        set("/Sub/A/Device/D1/Mine", "set");
    });
    EXPECT_EQ(at("/Sub/A/Device/D1/Mine"), QStringLiteral("set"));
    ASSERT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("set"));
    text(serverTree, "/K/Device/D1/Mine")->SetValue(QStringLiteral("answer"), nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Mine"), QStringLiteral("answer"));
    EXPECT_TRUE(pair.serverAccepts);
}

TEST_F(Resynchronisation, KeepsAnAnnouncedValueWhoseNodeTheServerHasRemovedMeanwhile)
{
    addText(serverTree, QStringLiteral("/K/Device/D1/Other"), QStringLiteral("X"), QStringLiteral("1"));
    pair.connect();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    addLocal("/Sub/A/Device/D1", "Mine");
    set("/Sub/A/Device/D1/Mine", "set");
    pair.carryToClient(); // the server has not heard of it yet
    EXPECT_EQ(at("/Sub/A/Device/D1/Mine"), QStringLiteral("set"));
    EXPECT_FALSE(clientTree.findNode(QStringLiteral("/Sub/A/Device/D1/Other")));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/D1/Mine"), QStringLiteral("set"));
}

TEST_F(Resynchronisation, KeepsAnAnnouncedValueWhoseTopTheServerHasRemovedMeanwhile)
{
    pair.connect();
    serverTree.removeNode(QStringLiteral("/K"));
    addLocal("/Sub/A/Device", "Mine");
    set("/Sub/A/Device/Mine", "set");
    pair.carryToClient();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("set"));
    EXPECT_EQ(at("/Sub/A/Device/State"), QStringLiteral("(absent)"));
    pair.carry();
    EXPECT_EQ(atServer("/K/Device/Mine"), QStringLiteral("set"));
    serverTree.removeNode(QStringLiteral("/K"));
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("(absent)"));
}

TEST_F(Resynchronisation, FollowsTheServersValueWhenBothAddOneOfAnotherClass)
{
    pair.connect();
    addNew<values::Value<int>>(clientTree, QStringLiteral("/Sub/A/Device/D1"), QStringLiteral("Both"))
        ->SetValue(1, nullptr);
    TextValue *const server = addText(serverTree, QStringLiteral("/K/Device/D1"), QStringLiteral("Both"), QString());
    pair.carry();
    server->SetValue(QStringLiteral("later"), nullptr);
    pair.carry();
    EXPECT_EQ(at("/Sub/A/Device/D1/Both"), QStringLiteral("later"));
    set("/Sub/A/Device/D1/Both", "back");
    pair.carry();
    EXPECT_EQ(server->GetValue(), QStringLiteral("back"));
}

TEST_F(Resynchronisation, TakesAwayAnAnnouncedValueThatTheServerHasRemoved)
{
    pair.connect();
    addLocal("/Sub/A/Device", "Mine");
    set("/Sub/A/Device/Mine", "set");
    pair.carry();
    serverTree.removeValue(QStringLiteral("/K/Device/Mine"));
    pair.session->flush();
    pair.toClient.clear();
    amid([this] { set("/Sub/A/Device/Mine", "again"); });
    EXPECT_EQ(at("/Sub/A/Device/Mine"), QStringLiteral("(absent)"));
    EXPECT_TRUE(pair.serverAccepts);
}
} // namespace
