#include "tests/orbconnection/joinedmirror.h"
#include "tests/orbconnection/observers.h"

using namespace values;

namespace
{
/// A client between whose changes the peer reads nothing.
class FullQueue : public TwoTrees
{
protected:
    FullQueue()
    {
        timing.windowBytes = 100;
        timing.queueBytes = 1000;
        outlet.put = [this](quint64, std::string bytes) { batches.push_back(std::move(bytes)); };
        outlet.waiting = [this] { return waiting; };
        outlet.wantsFlush = [] {};
    }
    /// What a client writes that has room again.
    std::size_t written(mirror::MirrorClient &client)
    {
        batches.clear();
        client.flush();
        std::size_t bytes = 0;
        for (const std::string &batch : batches)
            bytes += batch.size();
        return bytes;
    }
    /// Mirrors "/K/Device" of the server to "/C".
    void join(mirror::MirrorClient &client)
    {
        std::deque<std::string> toClient;
        session = std::make_unique<mirror::MirrorSession>(serverTree, QStringLiteral("/K/Device"), MirrorTiming(),
                                                          JoinedMirror::outletTo(toClient));
        session->flush();
        client.begin();
        for (const std::string &batch : toClient)
            client.receive(batch);
        session.reset();
    }
    /// Gives a server's session what a client has written.
    void deliverToServer(mirror::MirrorClient &client)
    {
        written(client);
        std::deque<std::string> answers;
        session = std::make_unique<mirror::MirrorSession>(serverTree, QStringLiteral("/K/Device"), MirrorTiming(),
                                                          JoinedMirror::outletTo(answers));
        for (const std::string &batch : batches)
            EXPECT_TRUE(session->receive(batch));
        session.reset();
    }
    /// Gives a client what a server's session has written.
    void deliverToClient(mirror::MirrorSession &server, mirror::MirrorClient &client)
    {
        server.flush();
        for (const std::string &batch : batches)
            client.receive(batch);
        batches.clear();
    }
    void setOften(TextValue &value, int times)
    {
        for (int i = 1; i <= times; ++i)
            value.SetValue(QStringLiteral("content %1").arg(i), nullptr);
    }

    MirrorTiming timing;
    mirror::Outlet outlet;
    std::size_t waiting = 0;
    std::deque<std::string> batches;
    std::unique_ptr<mirror::MirrorSession> session;
};

TEST_F(FullQueue, OfAClientTakesNothingThatCanBeMergedUntilThereIsRoom)
{
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    join(client);
    waiting = timing.windowBytes;
    TextValue &value = *text(clientTree, "/C/State");
    for (int i = 0; i < 100; ++i) {
        value.SetValue(QString::number(i), nullptr);
        EXPECT_FALSE(client.flush());
    }
    EXPECT_EQ(written(client), 0u);
    waiting = 0;
    const std::size_t bytes = written(client);
    EXPECT_GT(bytes, 0u);
    EXPECT_LT(bytes, 200u);
    EXPECT_TRUE(client.flush());
}

TEST_F(FullQueue, OfAClientMergesAlsoWhatIsToldOneByOneOtherwise)
{
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    join(client);
    TextValue &value = *text(clientTree, "/C/State");
    value.setOptimized(false);
    setOften(value, 3);
    EXPECT_GT(written(client), 3 * sizeof("content 1"));
    waiting = timing.queueBytes;
    setOften(value, 1000);
    EXPECT_EQ(written(client), 0u);
    waiting = 0;
    EXPECT_LT(written(client), 200u);
}

TEST_F(FullQueue, OfAServerMergesAlsoWhatIsToldOneByOneOtherwise)
{
    state->setOptimized(false);
    mirror::MirrorSession server(serverTree, QStringLiteral("/K/Device"), timing, outlet);
    EXPECT_TRUE(server.flush());
    waiting = timing.queueBytes;
    batches.clear();
    setOften(*state, 1000);
    EXPECT_FALSE(server.flush());
    EXPECT_TRUE(batches.empty());
    waiting = 0;
    EXPECT_TRUE(server.flush());
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_LT(batches.front().size(), 200u);
}

TEST_F(FullQueue, OfAClientStillTellsThatAChangeWasForced)
{
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    join(client);
    text(clientTree, "/C/State")->setOptimized(false);
    waiting = timing.queueBytes;
    text(clientTree, "/C/State")->HasChanged(ChangeCodeValue, nullptr);
    waiting = 0;
    Diary diary(state);
    deliverToServer(client);
    EXPECT_EQ(diary.codes, std::vector<int>{ChangeCodeValue});
}

TEST_F(FullQueue, OfAClientLeavesTheContentOfAValueThatItsAnnouncementMeets)
{
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    join(client);
    TextValue *const own = addText(clientTree, QStringLiteral("/C"), QStringLiteral("Both"), QStringLiteral("client's"));
    own->setOptimized(false);
    written(client);
    TextValue *const met = addText(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Both"), QStringLiteral("x"));
    waiting = timing.queueBytes;
    own->SetState(ValueStateSeeded, nullptr);
    waiting = 0;
    deliverToServer(client);
    EXPECT_EQ(met->GetState(), ValueStateSeeded);
    EXPECT_EQ(met->GetValue(), QStringLiteral("x"));
}

TEST_F(FullQueue, OfAServerStillTellsThatAChangeWasForced)
{
    state->setOptimized(false);
    mirror::MirrorSession server(serverTree, QStringLiteral("/K/Device"), timing, outlet);
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    client.begin();
    deliverToClient(server, client);
    waiting = timing.queueBytes;
    state->HasChanged(ChangeCodeValue, nullptr);
    waiting = 0;
    Diary diary(text(clientTree, "/C/State"));
    deliverToClient(server, client);
    EXPECT_EQ(diary.codes, std::vector<int>{ChangeCodeValue});
}

TEST_F(FullQueue, OfAServerKeepsArgumentsBeforeTheirCommand)
{
    auto *const command = addNew<Value<int>>(serverTree, QStringLiteral("/K/Device"), QStringLiteral("Command"));
    command->setOptimized(false);
    mirror::MirrorSession server(serverTree, QStringLiteral("/K/Device"), timing, outlet);
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    client.begin();
    deliverToClient(server, client);
    waiting = timing.queueBytes;
    for (int i = 1; i <= 3; ++i) {
        state->SetValue(QString::number(i), nullptr);
        command->SetValue(i, nullptr);
    }
    waiting = 0;
    std::vector<QString> arguments;
    const Answer answer(clientTree, "/C/Command", ChangeCodeValue, [&] { arguments.push_back(at("/C/State")); });
    deliverToClient(server, client);
    EXPECT_EQ(arguments, std::vector{QStringLiteral("3")});
}

TEST_F(FullQueue, OfAClientLosesNoPartOfWhatIsToldOneByOneOtherwise)
{
    mirror::MirrorClient client(clientTree, QStringLiteral("/C"), QString(), timing, outlet);
    join(client);
    TextValue &value = *text(clientTree, "/C/State");
    value.setOptimized(false);
    waiting = timing.queueBytes;
    value.SetState(ValueStateSeeded, nullptr);
    waiting = 0;
    batches.clear();
    client.flush();
    mirror::MirrorSession server(serverTree, QStringLiteral("/K/Device"), timing, outlet);
    for (const std::string &batch : std::exchange(batches, {}))
        EXPECT_TRUE(server.receive(batch));
    EXPECT_EQ(state->GetState(), ValueStateSeeded);
}

TEST_F(FullQueue, OfAServerIsAskedAgainWhenOnlyAConfirmationWaits)
{
    mirror::MirrorSession server(serverTree, QStringLiteral("/K/Device"), timing, outlet);
    EXPECT_TRUE(server.flush());
    std::string batch;
    mirror::appendHeader(batch, 1);
    mirror::appendRecord(batch, {.kind = mirror::RecordKind::Path, .path = "State"});
    EXPECT_TRUE(server.receive(batch));
    waiting = timing.windowBytes;
    EXPECT_FALSE(server.flush());
    waiting = 0;
    batches.clear();
    EXPECT_TRUE(server.flush());
    EXPECT_EQ(batches.size(), 1u);
}
} // namespace
