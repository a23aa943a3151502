#include "orbconnection/mirrorlink.h"

#include "orbconnection/corbaloc.h"
#include "orbconnection/vtserver.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/orbconnection/mirrorpair.h"
#include "tests/orbconnection/ownorb.h"
#include "tests/support/rudetreeserver.h"

#include <optional>
#include <stdexcept>

using mirror::MirrorLink;

namespace
{
/// Whoever is told by a link, and is in trouble the first time that it is told some of these things. Thread: any.
struct Told {
    bool begunThrows;
    bool receivedThrows;
    bool endedThrows;
    std::atomic<int> begun = 0;
    std::atomic<int> received = 0;
    std::atomic<int> ended = 0;

    static void count(std::atomic<int> &times, bool throws)
    {
        if (times++ == 0 && throws)
            throw std::runtime_error("too little memory");
    }
};

struct LinkCase {
    const char *name;
    bool begunThrows;
    bool receivedThrows;
    bool endedThrows;
};

void PrintTo(const LinkCase &row, std::ostream *out)
{
    *out << row.name;
}

class Link : public TwoTrees
{
protected:
    static MirrorTiming quietTiming()
    {
        MirrorTiming timing = OwnOrb::timing();
        timing.heartbeat = std::chrono::hours(1); // so that nobody notices the other's end by silence
        return timing;
    }
    static std::shared_ptr<MirrorLink> make(const std::shared_ptr<Told> &told,
                                            const MirrorTiming &timing = OwnOrb::timing())
    {
        const QString host = OwnOrb::addressFromOutside().ipAddress;
        return std::make_shared<MirrorLink>(
            CorbaCommon::corbaloc(host, VtServer::port, "ValueTree"), QStringLiteral("The server"),
            QStringLiteral("/K"), timing,
            MirrorLink::Events{[told](const auto &) { Told::count(told->begun, told->begunThrows); },
                               [told](const auto &, const auto &) { Told::count(told->received, told->receivedThrows); },
                               [told](const auto &) { Told::count(told->ended, told->endedThrows); }});
    }
};

TEST_F(Link, DoesNotBlameTheServerForASessionThatItEndsItself)
{
    OwnOrb::instance();
    const VtServer server(serverTree, OwnOrb::timing());
    const auto told = std::make_shared<Told>();
    const auto link = make(told);
    link->start();
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return told->received >= 1; }));
    const CapturedTraces traces;
    link->stop();
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return told->ended == told->begun; }));
    EXPECT_FALSE(traces.contain("has ended the session"));
}

TEST_F(Link, TellsTheServerThatItEnds)
{
    OwnOrb::instance();
    const VtServer server(serverTree, quietTiming());
    const auto told = std::make_shared<Told>();
    const auto link = make(told, quietTiming());
    link->start();
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return told->received >= 1; }));
    EXPECT_EQ(server.sessionCount(), 1);
    link->stop();
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return server.sessionCount() == 0; }));
}

TEST_F(Link, IsToldThatTheServerEnds)
{
    OwnOrb::instance();
    std::optional<VtServer> server(std::in_place, serverTree, quietTiming());
    const auto told = std::make_shared<Told>();
    const auto link = make(told, quietTiming());
    link->start();
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return told->received >= 1; }));
    server.reset();
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return told->ended == 1; }));
    link->stop();
}

TEST_F(Link, AsksForNothingWhileThereIsNoRoomForIt)
{
    OwnOrb::instance();
    const RudeTreeServer server(RudeTreeServer::Manner::Honest);
    MirrorTiming timing = OwnOrb::timing();
    timing.queueBytes = 1;
    std::mutex mutex; // guards the session
    std::shared_ptr<mirror::LinkSession> session;
    const auto link = std::make_shared<MirrorLink>(
        CorbaCommon::corbaloc(OwnOrb::addressFromOutside().ipAddress, VtServer::port, "ValueTree"),
        QStringLiteral("The server"), QStringLiteral("/K"), timing,
        MirrorLink::Events{[](const auto &) {},
                           [&](const auto &from, const auto &) {
                               const std::lock_guard lock(mutex);
                               session = from; // and keeps the batch
                           },
                           [](const auto &) {}});
    const auto withRoom = [&] { return server.pullCount() - server.pullCountWithoutRoom(); };
    link->start();
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return server.pullCountWithoutRoom() >= 3; }));
    EXPECT_EQ(withRoom(), 1);
    {
        const std::lock_guard lock(mutex);
        session->bytesToApply = 0;
    }
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return withRoom() >= 2; }));
    link->stop();
}

class ALink : public Link, public testing::WithParamInterface<LinkCase>
{
};

TEST_P(ALink, BeginsAnotherSessionWhenWhoIsToldThrows)
{
    OwnOrb::instance();
    const CapturedTraces traces;
    const VtServer server(serverTree, OwnOrb::timing());
    const auto told =
        std::make_shared<Told>(GetParam().begunThrows, GetParam().receivedThrows, GetParam().endedThrows);
    const auto link = make(told);
    link->start();
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return told->begun >= 2 && told->received >= 1 + told->receivedThrows; }));
    EXPECT_TRUE(traces.contain("The server is left: too little memory"));
    link->stop();
    EXPECT_TRUE(OwnOrb::comesTrue([&] { return told->ended == told->begun; }));
}

INSTANTIATE_TEST_SUITE_P(Troubles, ALink,
                         testing::Values(LinkCase{"AtTheBegin", true, false, false},
                                         LinkCase{"AtABatch", false, true, false},
                                         LinkCase{"AtABatchAndAtTheEnd", false, true, true}),
                         [](const auto &row) { return row.param.name; });
} // namespace
