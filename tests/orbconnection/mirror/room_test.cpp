#include "tests/orbconnection/joinedmirror.h"

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
} // namespace
