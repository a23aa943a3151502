#include "tests/commands/outagefixture.h"

#include "orbconnection/orbhandler.h"
#include "tests/support/outage.h"
#include "tests/support/waiting.h"

#include <QElapsedTimer>
#include <QtTest/QTest>

#include <thread>

using std::chrono::milliseconds;
using namespace std::chrono_literals;

namespace
{

const milliseconds callLimit = CorbaCommon::OrbSettings().callTimeout; // as every client has it
constexpr milliseconds outageTime = 30s;
constexpr auto longestOutage = 90s; // by then all should have had enough of waiting

/// A client with a command to give, about a record that nobody else has anything to do with.
struct Client {
    Client(const CommandUnderFire &command, const QString &record) : command(command), world(record) {}

    const CommandUnderFire &command;
    World world;
    int round = 0;
    unsigned long number = 0;
};

/// Clients side by side, and a manager that stands still.
class SuspendedManager : public OutageFixture
{
protected:
    static void SetUpTestSuite() { setUp(callLimit, static_cast<int>(commandsUnderFire().size())); }

    SuspendedManager()
    {
        const QStringList records = recordIds();
        for (const CommandUnderFire &command : commandsUnderFire())
            clients.push_back(std::make_unique<Client>(command, records.at(static_cast<int>(clients.size()))));
    }
    void prepareAll()
    {
        for (const auto &client : clients) {
            client->round = ++lastRound;
            client->command.prepare(client->world, client->round);
        }
    }
    /// Each in a thread of its own, while this one waits for them and touches nothing.
    void giveAtOnce()
    {
        std::vector<std::jthread> threads;
        for (const auto &client : clients)
            threads.emplace_back([&client = *client] {
                client.number = client.command.give(client.world, client.round);
            });
    }
    /// Nobody has been kept waiting, and everybody knows that there is something to be found out.
    void expectSilence() const
    {
        for (const auto &client : clients) {
            SCOPED_TRACE(client->command.name);
            EXPECT_EQ(client->number, client->command.whenSilent);
            EXPECT_TRUE(client->command.outcomeIsUnknown(client->world));
        }
    }
    /// A client that comes now has to find the manager, and then asks in vain for its interface.
    void expectSilenceForANewcomer() const
    {
        const World &world = clients.front()->world;
        world.manager->Shutdown();
        world.manager->ReconnectToServer(); // whether or not the central object service still has its name
        KorveGUI::GuiToServerAdminCorbaHandler admin(world.manager);
        EXPECT_EQ(admin.SetRecordComment(world.device, world.record, QStringLiteral("new")), 101u);
        EXPECT_FALSE(admin.OutcomeIsUnknown()); // it was never sent
    }
    /// The calls wait for the manager, although nobody waits for them any more.
    std::vector<std::string> undone() const
    {
        std::vector<std::string> names;
        for (const auto &client : clients)
            if (!client->command.onlyAsks && client->command.effects(client->world, client->round) != 1)
                names.push_back(client->command.name);
        return names;
    }
    void expectThatAllWorks() const
    {
        for (const auto &client : clients) {
            client->command.prepare(client->world, ++lastRound);
            const unsigned long number = client->command.give(client->world, lastRound);
            EXPECT_EQ(number, 0u) << client->command.name;
            check(client->command, client->world, lastRound, number);
        }
    }
    void expectThatNothingWasDoneTwice() const
    {
        for (const auto &client : clients)
            EXPECT_LE(client->command.effects(client->world, client->round), 1) << client->command.name;
    }

    std::vector<std::unique_ptr<Client>> clients;
};

TEST_F(SuspendedManager, KeepsNobodyWaitingAndDoesNothingTwice)
{
    expectThatAllWorks(); // and the ORB has no more questions to ask before it sends a call
    prepareAll();
    {
        const Outage outage(*process("manager"), longestOutage);
        QElapsedTimer since;
        since.start();
        giveAtOnce();
        expectSilence();
        expectSilenceForANewcomer();
        ASSERT_TRUE(QTest::qWaitFor([&] { return since.hasExpired(outageTime.count()); }, patienceMs));
        EXPECT_TRUE(outage.lasts());
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return undone().empty(); }, patienceMs))
        << testing::PrintToString(undone());
    for (const auto &client : clients)
        client->world.connect();
    expectThatAllWorks();
    expectThatNothingWasDoneTwice();
}

} // namespace
