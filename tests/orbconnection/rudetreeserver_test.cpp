#include "tests/support/rudetreeserver.h"

#include "orbconnection/vtconnectionobserver.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/orbconnection/ownorb.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/rawserver.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using Manner = RudeTreeServer::Manner;

namespace
{
struct RudeCase {
    const char *name;
    Manner manner;
    const char *trace;
};

void PrintTo(const RudeCase &row, std::ostream *out)
{
    *out << row.name;
}

MirrorTiming shortTiming()
{
    MirrorTiming timing = OwnOrb::timing();
    timing.heartbeat = 100ms;
    timing.snapshotPatience = 200ms;
    timing.maximumBatchBytes = RudeTreeServer::tooManyBytes;
    return timing;
}

class RudeServer : public testing::TestWithParam<RudeCase>
{
protected:
    RudeServer() { OwnOrb::instance(); }
    ~RudeServer() override { values::Tree::Instance().removeNode(QStringLiteral("/")); }

    static std::unique_ptr<VtConnectionObserver> connect(const VtConnectData &address,
                                                         const MirrorTiming &timing = shortTiming())
    {
        return std::make_unique<VtConnectionObserver>(QStringLiteral("/K"), QStringLiteral("/C"), address, QString(),
                                                      timing);
    }

    const CapturedTraces traces;
};

TEST_P(RudeServer, IsNamedAndLeftAndTriedAgain)
{
    RudeTreeServer server(GetParam().manner);
    const auto connection = connect(OwnOrb::addressFromOutside());
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return traces.contain(GetParam().trace); }));
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return server.opened().size() >= 3; }));
    server.behave(Manner::Honest);
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return connection->isConnected(); }));
    const values::ValueBase *const state = values::Tree::Instance().findValue(QStringLiteral("/C/State"));
    ASSERT_TRUE(state);
    EXPECT_EQ(state->GetStringValue(), QStringLiteral("honest"));
    EXPECT_EQ(state->GetState(), values::ValueStateValid);
}

INSTANTIATE_TEST_SUITE_P(
    Manners, RudeServer,
    testing::Values(
        RudeCase{"OtherVersion", Manner::OtherVersion, "speaks version 7 of the mirror, this is version 2"},
        RudeCase{"EndsSessions", Manner::EndsSessions, "has ended the session"},
        RudeCase{"NeverCompletes", Manner::NeverCompletes, "/C is to connect again: no snapshot is completed"},
        RudeCase{"SaysNothing", Manner::SaysNothing, "/C is to connect again: no snapshot is completed"},
        RudeCase{"EmptyBatches", Manner::EmptyBatches, "does not answer as a tree server: MARSHAL"},
        RudeCase{"BatchTooLong", Manner::BatchTooLong, "does not answer as a tree server: MARSHAL"},
        RudeCase{"SkipsNumbers", Manner::SkipsNumbers, "/C is to connect again: no snapshot is completed"},
        RudeCase{"Malformed", Manner::Malformed, "/C is to connect again: its batch cannot be applied"},
        RudeCase{"HugeLength", Manner::HugeLength, "The server's batch is refused: it is malformed"},
        RudeCase{"Hangs", Manner::Hangs, "does not answer as a tree server: TRANSIENT"},
        RudeCase{"HangsInOpen", Manner::HangsInOpen, "does not answer as a tree server: TRANSIENT"}),
    [](const auto &row) { return row.param.name; });

TEST_F(RudeServer, IsTriedAfterLongerPausesWhileItCompletesNothing)
{
    const RudeTreeServer server(Manner::EndsSessions);
    MirrorTiming timing = shortTiming();
    timing.backOff = {1ms, 50ms, 200ms};
    const auto connection = connect(OwnOrb::addressFromOutside(), timing);
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return server.opened().size() >= 5; }));
    const auto opened = server.opened();
    EXPECT_GE(opened[2] - opened[1], 50ms);
    EXPECT_GE(opened[3] - opened[2], 200ms);
    EXPECT_GE(opened[4] - opened[3], 200ms);
}

TEST_F(RudeServer, ThatSaysNothingAtOnceIsNotAskedWithoutPause)
{
    const RudeTreeServer server(Manner::SaysNothing);
    const auto begin = RudeTreeServer::Clock::now();
    const auto connection = connect(OwnOrb::addressFromOutside());
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return server.opened().size() >= 2; }));
    const auto pulls = server.pullCount();
    const auto sessions = static_cast<int>(server.opened().size());
    EXPECT_LE(pulls - sessions, (RudeTreeServer::Clock::now() - begin) / 20ms);
}

TEST_F(RudeServer, ThatSkipsNumbersIsAskedForASnapshotOncePerSession)
{
    const RudeTreeServer server(Manner::SkipsNumbers);
    const auto connection = connect(OwnOrb::addressFromOutside());
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return server.opened().size() >= 2 && server.resynchronisationCount() >= 1; }));
    const int asked = server.resynchronisationCount();
    EXPECT_LE(asked, static_cast<int>(server.opened().size()));
}

TEST_F(RudeServer, ThatLosesBatchesIsAskedForASnapshotEachTimeInOneSession)
{
    const RudeTreeServer server(Manner::LosesBatches);
    const auto connection = connect(OwnOrb::addressFromOutside());
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return server.resynchronisationCount() >= 3; }));
    EXPECT_EQ(server.opened().size(), 1u);
    EXPECT_TRUE(connection->isConnected());
}

TEST_F(RudeServer, ThatHasNothingMoreToSayIsNotLeftForIt)
{
    const RudeTreeServer server(Manner::Honest);
    const auto connection = connect(OwnOrb::addressFromOutside());
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return connection->isConnected(); }));
    const int pulls = server.pullCount();
    const auto heartbeats = 4 * shortTiming().snapshotPatience / shortTiming().heartbeat;
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return server.pullCount() >= pulls + heartbeats; }));
    EXPECT_EQ(server.opened().size(), 1u);
    EXPECT_TRUE(connection->isConnected());
}

TEST_F(RudeServer, ThatAnnouncesAHugeMessageIsLeft)
{
    const LoopbackLease lease;
    using namespace std::string_literals;
    const RawServer server(lease.address(), 8004, [](const std::string &) { return "GIOP\1\2\1\1\xff\xff\xff\x7f"s; });
    const auto connection = connect({QString(), lease.address()});
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return traces.contain("does not answer as a tree server: "); }));
    EXPECT_FALSE(connection->isConnected());
}
} // namespace
